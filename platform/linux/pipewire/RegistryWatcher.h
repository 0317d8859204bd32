// Follows the daemon's registry: binds what matters and feeds the graph model with what it tells.
// [loop] throughout, the events too.
#pragma once

#include <spa/utils/hook.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "GraphModel.h"
#include "MetadataWriter.h"

struct pw_core;
struct pw_proxy;
struct pw_registry;
struct spa_dict;
struct spa_pod;

namespace quillmere::pipewire {

class RegistryWatcher final : public MetadataWriter {
 public:
  struct Events {
    /// The model has changed.
    std::function<void()> changed;
    /// The session manager's metadata has come or gone.
    std::function<void(bool isThere)> metadataPresence;
    /// An entry of it has changed; the model has the new value already.
    std::function<void(GlobalID subject, const std::string& key, const std::optional<std::string>& value)> metadata;
    /// A client, a device, a link or the metadata has appeared or gone: about now changes of the metadata may be
    /// missed, or this is what one that was missed has caused.
    std::function<void()> unsettled;
    /// The volumes of a node, or of the routes of a device, have been told.
    std::function<void()> volumes;
  };

  RegistryWatcher(GraphModel& model, Events events);
  ~RegistryWatcher() override;
  RegistryWatcher(const RegistryWatcher&) = delete;
  RegistryWatcher& operator=(const RegistryWatcher&) = delete;

  void attach(pw_core* core);
  /// Lets go of every proxy and empties the model.
  void detach();

  /// The proxy of a node or a device; null where it isn't bound.
  [[nodiscard]] pw_proxy* proxy(GlobalID id) const;
  /// Has the metadata told once more from the start. 0.3.65 withholds a change from everybody but a client that is just
  /// binding it, so that one may be missed whenever a program starts; and every change from then on, if that client
  /// goes before it is done.
  void refreshMetadata();
  /// All that is there has been told again: what was not has been deleted, and that was told to somebody else.
  void metadataRefreshed();
  [[nodiscard]] bool hasMetadata() const { return metadata_ != 0; }
  /// By what name the client that keeps the metadata goes, which is the session manager's; empty if that isn't known.
  [[nodiscard]] std::string metadataKeeper() const;

  void write(std::uint32_t subject, const std::string& key, const std::string& type,
             const std::optional<std::string>& value) override;

 private:
  struct Bound;
  struct Callbacks;
  void onGlobal(GlobalID id, const char* type, std::uint32_t version, const spa_dict* dict);
  void onGlobalRemoved(GlobalID id);
  Bound* bind(GlobalID id, const char* type, std::uint32_t version);
  void bindMetadata(GlobalID id);
  /// Binds one of those that are there, if none is bound.
  void followMetadata();
  void onNodeParam(GlobalID id, const spa_pod* param);
  void onRoute(Bound& device, std::uint32_t index, const spa_pod* param);

  GraphModel& model_;
  Events events_;
  pw_registry* registry_ = nullptr;
  spa_hook listener_{};
  std::map<GlobalID, std::unique_ptr<Bound>> bound_;
  /// Global id of the `default` metadata; 0 where there is none.
  GlobalID metadata_ = 0;
  /// All `default` metadata that are there, with the client that keeps each. One session manager may start while
  /// another still runs.
  std::map<GlobalID, std::optional<GlobalID>> keepers_;
  /// What has been told since the last refresh began; absent while none is on its way.
  std::optional<std::set<std::pair<GlobalID, std::string>>> toldAgain_;
};

}  // namespace quillmere::pipewire
