// How the virtual machine is put together, and what a test does with it. Compiled once for all tests that stand on one:
// it was a third of what each of them took.
#include "VirtualMachine.h"

#include <chrono>
#include <string_view>

#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {
namespace {

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

}  // namespace

VirtualMachine::VirtualMachine(UserDefaults& disk)
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

VirtualMachine::~VirtualMachine() {
  state.reset();
  time.shutDown();
}

void VirtualMachine::tapForReal() {
  taps = std::make_unique<ProcessTapEngine>(audio, runtime);
  driver = std::make_unique<DriverClient>(*taps, runtime.background);
  engine->putBefore(engineCallsThrough(*driver));
}

void VirtualMachine::tellChanges(bool tells) {
  audio.setTellsChanges(tells);
  workspace.setTellsChanges(tells);
  player.setTellsChanges(tells);
  browsers.setTellsChanges(tells);
}

void VirtualMachine::create() { state = AppState::create(machine, runtime, engine); }

void VirtualMachine::start() {
  create();
  time.runUntilIdle();
}

void VirtualMachine::detect() { time.advance(std::chrono::milliseconds(150)); }

void VirtualMachine::advanceSeconds(double seconds) {
  time.advance(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
}

AudioObjectID VirtualMachine::addSpeakers(float volume) {
  return audio.addDevice({"speakers", "Speakers", 1, audio::transportBuiltIn, true, {{0, {volume}}}});
}

AudioObjectID VirtualMachine::addHeadset(float volume) {
  return audio.addDevice({"headset", "Headset", 1, audio::transportUSB, true, {{0, {volume}}}});
}

void VirtualMachine::launch(const std::string& bundleID, const std::string& name) {
  const auto pid = ++lastPID_;
  workspace.launch(bundleID, name, pid);
  processes_[bundleID] = {audio.addProcess({bundleID, pid, false, false}), {bundleID, pid, false, false}};
}

void VirtualMachine::quit(const std::string& bundleID) {
  workspace.terminate(bundleID);
  const auto process = processes_.extract(bundleID);
  if (!process.empty()) audio.removeProcess(process.mapped().first);
}

bool VirtualMachine::isRunning(const std::string& bundleID) const { return processes_.contains(bundleID); }

void VirtualMachine::setSounding(const std::string& bundleID, bool sounds_) {
  auto& [object, process] = processes_.at(bundleID);
  process.isRunningOutput = sounds_;
  audio.updateProcess(object, process);
}

void VirtualMachine::setListening(const std::string& bundleID, bool listens) {
  auto& [object, process] = processes_.at(bundleID);
  process.isRunningInput = listens;
  audio.updateProcess(object, process);
}

std::string VirtualMachine::applicationOf(AudioObjectID process) const {
  for (const auto& [bundleID, entry] : processes_) {
    if (entry.first == process) return bundleID;
  }
  return {};
}

std::int32_t VirtualMachine::pidOf(const std::string& bundleID) const { return processes_.at(bundleID).second.pid; }

std::optional<AudioApp> VirtualMachine::app(const std::string& bundleID) const {
  for (const auto& each : *state->apps()) {
    if (each.bundleID == bundleID) return each;
  }
  return std::nullopt;
}

float VirtualMachine::gainOf(const std::string& bundleID) const {
  const auto found = app(bundleID);
  return found ? found->gain : -1.0F;
}

}  // namespace quillmere
