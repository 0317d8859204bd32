// A whole machine in memory with the state running on it, in virtual time.
// Applications are named by their identifiers; what the engine and the settings receive is recorded.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "RecordingDefaults.h"
#include "RecordingEngine.h"
#include "platform/Machine.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/MemoryBrowserCompanions.h"
#include "platform/memory/MemoryMediaKeys.h"
#include "platform/memory/MemoryNowPlayingSource.h"
#include "platform/memory/MemorySoundPlayer.h"
#include "platform/memory/MemoryTabScripting.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"
#include "state/AppState.h"

namespace quillmere {

class DriverClient;
class ProcessTapEngine;

class VirtualMachine {
 public:
  /// `disk` outlives this.
  explicit VirtualMachine(UserDefaults& disk);
  ~VirtualMachine();
  VirtualMachine(const VirtualMachine&) = delete;
  VirtualMachine& operator=(const VirtualMachine&) = delete;

  /// From now on the engine's calls reach the real engine too, so that taps are made.
  void tapForReal();
  /// False: the machine can't tell that anything has changed, so that every poll asks each time. Before the start.
  void tellChanges(bool tells);
  /// Starts the state; nothing of its streams has run yet.
  void create();
  /// Starts the state and lets the first element of each stream arrive.
  void start();
  /// Lets exactly one further detection result arrive.
  void detect();
  void advanceSeconds(double seconds);

  AudioObjectID addSpeakers(float volume = 0.6F);
  AudioObjectID addHeadset(float volume = 0.4F);

  /// A running application with an audio process, silent.
  void launch(const std::string& bundleID, const std::string& name);
  void quit(const std::string& bundleID);
  [[nodiscard]] bool isRunning(const std::string& bundleID) const;
  void setSounding(const std::string& bundleID, bool sounds_);
  void setListening(const std::string& bundleID, bool listens);
  /// The application behind a process object; empty where it has gone.
  [[nodiscard]] std::string applicationOf(AudioObjectID process) const;
  [[nodiscard]] std::int32_t pidOf(const std::string& bundleID) const;

  /// The application in the state's list, if it is there.
  [[nodiscard]] std::optional<AudioApp> app(const std::string& bundleID) const;
  /// The application's gain in the list; -1 if it is not there.
  [[nodiscard]] float gainOf(const std::string& bundleID) const;

  VirtualTime time;
  RecordingLogSink log;
  std::shared_ptr<RecordingEngine> engine;
  Machine machine;
  MemoryAudioHardware& audio;
  MemoryWorkspace& workspace;
  MemoryNowPlayingSource& player;
  MemoryMediaKeys& keys;
  MemorySoundPlayer& sounds;
  MemoryTabScripting& browsers;
  MemoryBrowserCompanions& companions;
  Runtime runtime;
  /// Absent unless taps are made.
  std::unique_ptr<ProcessTapEngine> taps;
  std::unique_ptr<DriverClient> driver;
  std::shared_ptr<AppState> state;

 private:
  std::map<std::string, std::pair<AudioObjectID, MemoryProcess>> processes_;
  std::int32_t lastPID_ = 1000;
};

}  // namespace quillmere
