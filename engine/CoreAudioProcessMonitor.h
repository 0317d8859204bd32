// The system's audio process objects, polled.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/AudioHardware.h"
#include "runtime/Poll.h"

namespace quillmere {

class CoreAudioProcessMonitor {
 public:
  /// One audio process object at the time of a poll.
  struct Snapshot {
    /// As the object tells it; may be empty, may name a helper process.
    std::string bundleID;
    std::int32_t pid = 0;
    AudioObjectID audioObjectID = 0;
    bool isRunningOutput = false;
    bool isRunningInput = false;

    friend bool operator==(const Snapshot&, const Snapshot&) = default;
  };

  static constexpr Duration period = std::chrono::milliseconds(150);

  /// Both outlive every stream.
  CoreAudioProcessMonitor(const AudioHardware& hardware, Executor& background)
      : hardware_(&hardware), background_(&background) {}

  /// The list, at once and then every 150 ms, changed or not. [any]
  [[nodiscard]] Stream<std::vector<Snapshot>> stream() const;
  /// The same with what `join` makes of each list. It is called on [background], one call at a time, and knows nothing
  /// but the list and what `sources` tell of; they outlive the stream. [any]
  template <typename T, typename Join>
  [[nodiscard]] Stream<T> joined(const ChangeSources& sources, Join join) const {
    auto watched = sources;
    watched.push_back(&hardware_->changes());
    return Stream<T>::produce(*background_,
                              [&hardware = *hardware_, watched = std::move(watched), join = std::move(join)](
                                  TaskContext& task, typename Stream<T>::Writer& writer) -> Async<void> {
                                const ChangeWatch watch(watched);
                                auto own = join;
                                co_await poll<T>(task, writer, period, watch,
                                                 [&hardware, &own] { return own(snapshots(hardware)); });
                              });
  }

  /// The list of the moment, in the system's order; objects whose identifier cannot be read are left out. [any]
  [[nodiscard]] static std::vector<Snapshot> snapshots(const AudioHardware& hardware);

 private:
  const AudioHardware* hardware_;
  Executor* background_;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::CoreAudioProcessMonitor::Snapshot> {
  std::size_t operator()(const quillmere::CoreAudioProcessMonitor::Snapshot& snapshot) const noexcept;
};
