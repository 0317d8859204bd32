// The parts of the audio host put together: one thread that talks with the daemon, a snapshot for every other thread.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "AudioSnapshot.h"
#include "Connection.h"
#include "DefaultOutput.h"
#include "DeviceVolume.h"
#include "GraphModel.h"
#include "JackFeeder.h"
#include "Listeners.h"
#include "Loop.h"
#include "ObjectIDs.h"
#include "OutputScouts.h"
#include "RegistryWatcher.h"
#include "Stragglers.h"
#include "StreamMover.h"
#include "TapDirector.h"
#include "platform/linux/PipeWireAudioHardware.h"
#include "runtime/ChangeSignal.h"

namespace quillmere::pipewire {

/// [any] unless told otherwise: what other threads see is a snapshot under a lock of its own, what they write takes the
/// loop for as long as that lasts.
class Host {
 public:
  /// Waits for the first picture of the machine, though not for long. [main]
  Host(Executor& main, LogSink& log, ApplicationIdentifier identify, PipeWireOptions options);
  /// Gives every stream back and ends the thread. [any but loop]
  ~Host();

  [[nodiscard]] SharedSnapshot snapshot() const {
    const std::lock_guard lock(shared_.mutex);
    return SharedSnapshot(shared_.snapshot);
  }
  [[nodiscard]] bool isTapDevice(AudioObjectID device) const {
    const std::lock_guard lock(shared_.mutex);
    return shared_.tapDevices.contains(device);
  }
  /// The rate of a tap in Hz; absent for what is none.
  [[nodiscard]] std::optional<double> tapRate(AudioObjectID tap) const {
    const std::lock_guard lock(shared_.mutex);
    const auto found = shared_.tapRates.find(tap);
    if (found == shared_.tapRates.end()) return std::nullopt;
    return found->second;
  }

  /// Taken up at once: a read gives it before the session manager has confirmed it. [any]
  Status writeDefaultOutput(AudioObjectID device);
  /// The same for a device's volume. [any]
  Status writeVolume(AudioObjectID device, std::uint32_t element, float scalar);

  /// Runs an operation on the director with the loop held; the engine's calls come here. [any but loop]
  template <typename Operation>
  Status direct(Operation operation) {
    const LoopLock lock(loop_);
    const Status status = operation(director_);
    attend();
    return status;
  }
  // What the object ids of taps and aggregate devices are known by on other threads. [any]
  void noteTap(AudioObjectID tap, bool isThere) {
    const std::lock_guard lock(shared_.mutex);
    if (isThere) {
      shared_.tapRates.emplace(tap, shared_.graphRate);
    } else {
      shared_.tapRates.erase(tap);
    }
  }
  void noteDevice(AudioObjectID device, bool isThere) {
    const std::lock_guard lock(shared_.mutex);
    if (isThere) {
      shared_.tapDevices.insert(device);
    } else {
      shared_.tapDevices.erase(device);
    }
  }

  Listeners listeners;
  /// Raised when the snapshot is another one.
  ChangeSignal changed;

 private:
  void flush();
  void publish();
  void tell(const AudioSnapshot& before, const std::shared_ptr<const AudioSnapshot>& fresh);
  [[nodiscard]] DefaultOutput::Facts factsOf(const AudioSnapshot& fresh) const;
  /// After whatever may have changed what the director is at.
  void attend();
  void onConnected(pw_core* core);
  void onLost();
  void onDone(int sequence);
  void onNodesDone(int sequence);
  void noteFarewell();
  void onMetadata(GlobalID subject, const std::string& key, const std::optional<std::string>& value);
  void onMetadataPresence(bool isThere);
  void expectMissedMetadata();
  void deleteStaleTargets();
  /// Unique among all nodes of ours.
  [[nodiscard]] std::string nameOfNode(std::string_view kind);

  Logger log_;
  PipeWireOptions options_;

  struct {
    mutable std::mutex mutex;
    std::condition_variable complete;
    bool isComplete = false;
    /// Answers to our last words that are still to come.
    int farewellsAwaited = 0;
    std::shared_ptr<const AudioSnapshot> snapshot = std::make_shared<AudioSnapshot>();
    /// In Hz.
    std::map<AudioObjectID, double> tapRates;
    std::set<AudioObjectID> tapDevices;
    /// In Hz.
    double graphRate = 48000.0;
  } shared_;

  // All below: [loop].
  Loop loop_;
  GraphModel model_;
  ObjectIDs ids_;
  DefaultOutput default_;
  /// Devices that have just gone, and the round trip after which it is known what went with them.
  std::map<AudioObjectID, int> uncertain_;
  /// The two round trips after which the first picture is whole.
  int firstSync_ = -1;
  int secondSync_ = -1;
  /// The same after a refresh of the metadata.
  int refreshSync_ = -1;
  int secondRefreshSync_ = -1;
  int farewellSync_ = -1;
  int nodesFarewellSync_ = -1;
  bool isSynced_ = false;
  std::uint64_t nodesMade_ = 0;
  LoopSignal changed_;
  /// When the default output is to be judged again.
  LoopTimer judgement_;
  LoopTimer staleTargets_;
  LoopTimer refresh_;
  /// Set while a refresh is awaited.
  std::optional<std::chrono::steady_clock::time_point> latestRefresh_;
  LoopTimer ticks_;
  bool isTicking_ = false;
  /// Of a session manager under which nothing can be tapped: once while it is there.
  bool hasToldOfKeeper_ = false;
  LoopTimer moment_;
  RegistryWatcher watcher_;
  DeviceVolume volume_;
  StreamMover mover_;
  Connection connection_;
  JackFeeder jack_;
  TapFeeders feeders_;
  Stragglers stragglers_;
  OutputScouts scouts_;
  TapDirector director_;
};

}  // namespace quillmere::pipewire
