// Finds out where the session manager plays a stream: by a stream of ours that it links and that never runs.
// All calls with the loop locked, or on the loop.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "Destination.h"
#include "GraphModel.h"
#include "Loop.h"
#include "Stragglers.h"
#include "runtime/Logger.h"

struct pw_core;

namespace quillmere::pipewire {

/// A scout is a playback stream without sound, one for each destination. Whatever the session manager's rules are
/// (defaults, fall-backs, filters in front of a device, devices that are another's alone), it applies them to the scout
/// as to any stream, and the scout's link tells what came out. It also counts as a stream that uses the device.
class OutputScouts final : public OutputFinder {
 public:
  /// `core` gives the connection of the moment, null where there is none. `changed` is told when find() may answer
  /// otherwise and nothing in the model has changed. [loop]
  /// The stragglers stand as long as scouts do; until they are ready nothing counts as known.
  OutputScouts(Loop& loop, const GraphModel& model, Stragglers& stragglers, std::function<pw_core*()> core, Logger log,
               std::function<void()> changed);
  ~OutputScouts() override;
  OutputScouts(const OutputScouts&) = delete;
  OutputScouts& operator=(const OutputScouts&) = delete;

  /// What is needed no longer stays for a moment: mostly it is needed again.
  void need(const std::set<Destination>& destinations) override;
  void forget() override;
  [[nodiscard]] Answer find(const Destination& destination) const override;
  /// The model has changed: notices which scouts have been linked and which have lost their link. [loop]
  void graphChanged();

 private:
  struct Scout;
  [[nodiscard]] std::unique_ptr<Scout> send(const Destination& destination);
  [[nodiscard]] std::string guess(const Destination& destination) const;
  /// The output that the scout is linked to, empty where it isn't.
  [[nodiscard]] std::string linkedOutput(const Scout& scout) const;
  void giveUpWaiting();

  const GraphModel& model_;
  Stragglers& stragglers_;
  std::function<pw_core*()> core_;
  Logger log_;
  std::function<void()> changed_;
  LoopTimer patience_;
  LoopTimer dismissal_;
  std::uint64_t made_ = 0;
  std::set<Destination> needed_;
  std::map<Destination, std::unique_ptr<Scout>> scouts_;
};

}  // namespace quillmere::pipewire
