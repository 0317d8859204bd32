// A panel on a bus of the test's own: the watcher of status items, the host that shows them, and the portal's settings.
// Comes, goes and asks when the test says so.
#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "FilteredBus.h"

namespace quillmere::support {

class FakePanel {
 public:
  /// On the bus, and nobody yet.
  explicit FakePanel(const std::string& address);
  FakePanel(const FakePanel&) = delete;
  FakePanel& operator=(const FakePanel&) = delete;

  /// Is the watcher from now on; with or without somebody who shows the items.
  void comeAsWatcher(bool hasHost = true);
  /// Is the watcher no more, and forgets its items.
  void leaveAsWatcher();
  /// A host comes or goes, and the watcher says so.
  void setHost(bool hasHost);
  /// Refuses to take items from now on, or takes them again.
  void setRefuses(bool refuses);
  /// Takes items from now on without a word of it.
  void setSilent();
  /// Answers nothing from now on.
  void hang();
  /// Is the portal from now on, with this scheme.
  void comeAsPortal(std::uint32_t colorScheme);
  void changeColorScheme(std::uint32_t colorScheme);
  /// Says so without being the portal.
  void emitSetting(const std::string& group, const std::string& key, GVariant* value);
  /// Takes a name of any kind.
  void takeName(const std::string& name);

  /// What items called themselves, in the order of their registration.
  [[nodiscard]] std::vector<std::string> registrations() const;

  struct Answer {
    std::shared_ptr<GVariant> value;
    /// The name of the error on the bus; empty for none.
    std::string error;
  };
  /// Calls the item that registered last.
  Answer call(const char* path, const char* interface, const char* method, const std::string& arguments);
  Answer callMenu(const char* method, const std::string& arguments);
  Answer callItem(const char* method, const std::string& arguments);
  /// A property's value as text, without types.
  std::string property(const char* path, const char* interface, const std::string& name);
  /// The same, as it is; null if there is none.
  std::shared_ptr<GVariant> propertyValue(const char* path, const char* interface, const std::string& name);

  struct Signal {
    std::string member;
    /// The body as text.
    std::string body;
  };
  /// What the item and its menu have told so far.
  [[nodiscard]] std::vector<Signal> signals() const;
  [[nodiscard]] int signalCount(const std::string& member) const;

 private:
  GDBusMessage* filter(GDBusMessage* message);
  GVariant* busCall(const char* method, GVariant* arguments);
  void emit(const char* path, const char* interface, const char* signal, GVariant* body);

  mutable std::mutex mutex_;
  bool hasHost_ = false;
  bool refuses_ = false;
  bool isSilent_ = false;
  bool hangs_ = false;
  std::uint32_t colorScheme_ = 0;
  std::vector<std::string> registrations_;
  std::vector<Signal> signals_;
  /// Declared last: once it has gone, nobody is in the filter.
  FilteredBus bus_;
};

}  // namespace quillmere::support
