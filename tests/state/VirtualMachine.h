// A whole machine in memory with the state running on it, in virtual time.
// Applications are named by their identifiers; what the engine and the settings receive is recorded.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "RecordingDefaults.h"
#include "RecordingEngine.h"
#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"
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

/// Forwards to a database that outlives this: what is stored survives the machine, as a disk does.
class BorrowedDefaults final : public UserDefaults {
 public:
  explicit BorrowedDefaults(UserDefaults& disk) : disk_(disk) {}
  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override { return disk_.object(key); }
  void set(std::string_view key, DefaultsValue value) override { disk_.set(key, std::move(value)); }
  void remove(std::string_view key) override { disk_.remove(key); }

 private:
  UserDefaults& disk_;
};

class VirtualMachine {
 public:
  /// `disk` outlives this.
  explicit VirtualMachine(UserDefaults& disk)
      : engine(std::make_shared<RecordingEngine>(time.background())),
        machine{std::make_unique<MemoryAudioHardware>(time.main(), time),
                std::make_unique<BorrowedDefaults>(disk),
                std::make_unique<MemoryWorkspace>(),
                std::make_unique<MemoryNowPlayingSource>(time.main()),
                std::make_unique<MemoryMediaKeys>(),
                std::make_unique<MemorySoundPlayer>(),
                nullptr,
                std::make_unique<MemoryTabScripting>(),
                std::make_unique<MemoryBrowserCompanions>()},
        audio(static_cast<MemoryAudioHardware&>(*machine.audio)),
        workspace(static_cast<MemoryWorkspace&>(*machine.workspace)),
        player(static_cast<MemoryNowPlayingSource&>(*machine.nowPlaying)),
        keys(static_cast<MemoryMediaKeys&>(*machine.mediaKeys)),
        sounds(static_cast<MemorySoundPlayer&>(*machine.sounds)),
        browsers(static_cast<MemoryTabScripting&>(*machine.tabScripting)),
        companions(static_cast<MemoryBrowserCompanions&>(*machine.browserCompanions)),
        runtime(time.runtime(log)) {}
  ~VirtualMachine() {
    state.reset();
    time.shutDown();
  }
  VirtualMachine(const VirtualMachine&) = delete;
  VirtualMachine& operator=(const VirtualMachine&) = delete;

  /// From now on the engine's calls reach the real engine too, so that taps are made.
  void tapForReal() {
    taps = std::make_unique<ProcessTapEngine>(audio, runtime);
    driver = std::make_unique<DriverClient>(*taps, runtime.background);
    engine->putBefore(engineCallsThrough(*driver));
  }
  /// False: the machine can't tell that anything has changed, so that every poll asks each time. Before the start.
  void tellChanges(bool tells) {
    audio.setTellsChanges(tells);
    workspace.setTellsChanges(tells);
    player.setTellsChanges(tells);
    browsers.setTellsChanges(tells);
  }
  /// Starts the state; nothing of its streams has run yet.
  void create() { state = AppState::create(machine, runtime, engine); }
  /// Starts the state and lets the first element of each stream arrive.
  void start() {
    create();
    time.runUntilIdle();
  }
  /// Lets exactly one further detection result arrive.
  void detect() { time.advance(std::chrono::milliseconds(150)); }
  void advanceSeconds(double seconds) {
    time.advance(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
  }

  AudioObjectID addSpeakers(float volume = 0.6F) {
    return audio.addDevice({"speakers", "Speakers", 1, audio::transportBuiltIn, true, {{0, {volume}}}});
  }
  AudioObjectID addHeadset(float volume = 0.4F) {
    return audio.addDevice({"headset", "Headset", 1, audio::transportUSB, true, {{0, {volume}}}});
  }

  /// A running application with an audio process, silent.
  void launch(const std::string& bundleID, const std::string& name) {
    const auto pid = ++lastPID_;
    workspace.launch(bundleID, name, pid);
    processes_[bundleID] = {audio.addProcess({bundleID, pid, false, false}), {bundleID, pid, false, false}};
  }
  void quit(const std::string& bundleID) {
    workspace.terminate(bundleID);
    const auto process = processes_.extract(bundleID);
    if (!process.empty()) audio.removeProcess(process.mapped().first);
  }
  [[nodiscard]] bool isRunning(const std::string& bundleID) const { return processes_.contains(bundleID); }
  void setSounding(const std::string& bundleID, bool sounds_) {
    auto& [object, process] = processes_.at(bundleID);
    process.isRunningOutput = sounds_;
    audio.updateProcess(object, process);
  }
  void setListening(const std::string& bundleID, bool listens) {
    auto& [object, process] = processes_.at(bundleID);
    process.isRunningInput = listens;
    audio.updateProcess(object, process);
  }
  /// The application behind a process object; empty where it has gone.
  [[nodiscard]] std::string applicationOf(AudioObjectID process) const {
    for (const auto& [bundleID, entry] : processes_) {
      if (entry.first == process) return bundleID;
    }
    return {};
  }
  [[nodiscard]] std::int32_t pidOf(const std::string& bundleID) const { return processes_.at(bundleID).second.pid; }

  /// The application in the state's list, if it is there.
  [[nodiscard]] std::optional<AudioApp> app(const std::string& bundleID) const {
    for (const auto& each : *state->apps()) {
      if (each.bundleID == bundleID) return each;
    }
    return std::nullopt;
  }
  /// The application's gain in the list; -1 if it is not there.
  [[nodiscard]] float gainOf(const std::string& bundleID) const {
    const auto found = app(bundleID);
    return found ? found->gain : -1.0F;
  }

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
