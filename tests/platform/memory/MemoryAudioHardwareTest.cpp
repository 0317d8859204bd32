// The contract of the audio port on the in-memory machine.
#include "platform/memory/MemoryAudioHardware.h"

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "runtime/VirtualTime.h"
#include "tests/platform/contract/AudioHardwareContract.h"

namespace quillmere {
namespace {

/// A machine that sounds: a thread runs a cycle of all applications every fraction of a millisecond.
class MemoryAudioHost {
 public:
  MemoryAudioHost() {
    hardware_.setOutputsFall(true);
    const auto speakers = add(speakers_, audio::transportBuiltIn);
    hardware_.addDevice({.uid = microphone_, .name = "Microphone", .outputStreamCount = 0});
    hardware_.setDefaultOutput(speakers);
    run();
    sound_ = std::thread([this] {
      while (!isEnding_) {
        cycle();
        std::this_thread::sleep_for(std::chrono::microseconds(200));
      }
    });
  }
  ~MemoryAudioHost() {
    isEnding_ = true;
    sound_.join();
  }

  AudioHardware& hardware() { return hardware_; }
  void run() { time_.runUntilIdle(); }
  bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (true) {
      run();
      if (condition()) return true;
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::this_thread::yield();
    }
  }
  std::string speakers() { return speakers_; }
  std::string microphone() { return microphone_; }
  void plug(const std::string& uid) { add(uid, audio::transportBuiltIn); }
  void plugHeadset(const std::string& uid) { add(uid, audio::transportUSB); }
  void unplug(const std::string& uid) { hardware_.removeDevice(idOf(uid)); }
  void unplugForAGap(const std::string& uid) {
    hardware_.setLeavesGaps(true);
    unplug(uid);
  }
  void moveDefault(const std::string& uid) { hardware_.setDefaultOutput(idOf(uid)); }
  void moveVolume(const std::string& uid, float position) { hardware_.setVolume(idOf(uid), 0, position); }
  /// There is nothing behind it that could go.
  void restart() {}
  void launch(const std::string& identifier) {
    const MemoryProcess process{identifier, static_cast<std::int32_t>(++lastPID_), true, false};
    const std::lock_guard lock(mutex_);
    processes_[identifier] = {hardware_.addProcess(process), process};
  }
  void pause(const std::string& identifier) { setRunning(identifier, false); }
  void resume(const std::string& identifier) { setRunning(identifier, true); }
  void quit(const std::string& identifier) {
    const std::lock_guard lock(mutex_);
    hardware_.removeProcess(processes_.at(identifier).first);
    processes_.erase(identifier);
  }
  float level(const std::string& uid) {
    const std::lock_guard lock(mutex_);
    const auto found = levels_.find(idOf(uid));
    return found == levels_.end() ? 0.0F : found->second;
  }

 private:
  AudioObjectID add(const std::string& uid, std::uint32_t transport) {
    return devices_[uid] = hardware_.addDevice(
               {.uid = uid, .name = uid, .transport = transport, .volume = {{0, {}}, {1, {}}, {2, {}}}});
  }
  AudioObjectID idOf(const std::string& uid) { return devices_.at(uid); }
  void setRunning(const std::string& identifier, bool isRunning) {
    const std::lock_guard lock(mutex_);
    auto& [id, process] = processes_.at(identifier);
    process.isRunningOutput = isRunning;
    hardware_.updateProcess(id, process);
  }
  void cycle() {
    std::map<AudioObjectID, float> levels;
    const std::lock_guard lock(mutex_);
    for (const auto& [identifier, entry] : processes_) {
      if (!entry.second.isRunningOutput) continue;
      std::array<float, 128> input{};
      std::array<float, 128> output{};
      input.fill(1.0F);
      AudioBuffer in{2, sizeof(input), input.data()};
      AudioBuffer out{2, sizeof(output), output.data()};
      const auto aggregate = hardware_.runningAggregateOver(entry.first);
      if (!aggregate) {
        levels[hardware_.defaultOutput()] += 1.0F;
      } else if (hardware_.runIOCycle(*aggregate, {.buffers = {&in, 1}}, {.buffers = {&out, 1}})) {
        levels[hardware_.outputOf(*aggregate)] += output.back();
      }
    }
    levels_ = std::move(levels);
  }

  const std::string speakers_ = "speakers";
  const std::string microphone_ = "microphone";
  VirtualTime time_;
  MemoryAudioHardware hardware_{time_.main(), time_};
  std::map<std::string, AudioObjectID> devices_;
  int lastPID_ = 100;
  std::mutex mutex_;
  std::map<std::string, std::pair<AudioObjectID, MemoryProcess>> processes_;
  /// By the device that played it.
  std::map<AudioObjectID, float> levels_;
  std::atomic<bool> isEnding_{false};
  std::thread sound_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, AudioHardwareContract, MemoryAudioHost);

}  // namespace
}  // namespace quillmere
