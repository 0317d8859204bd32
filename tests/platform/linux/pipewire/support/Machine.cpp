#include "support/Machine.h"

#include <sched.h>

#include <cmath>
#include <stdexcept>

#include "support/Session.h"

namespace quillmere::test {

void QueueExecutor::post(Work work) {
  const std::lock_guard lock(mutex_);
  queue_.push_back(std::move(work));
}
TimerID QueueExecutor::postAfter(Duration, Work work) {
  post(std::move(work));
  return 0;
}
void QueueExecutor::cancelTimer(TimerID) {}
void QueueExecutor::runAll() {
  while (true) {
    Work next;
    {
      const std::lock_guard lock(mutex_);
      if (queue_.empty()) return;
      next = std::move(queue_.front());
      queue_.pop_front();
    }
    next();
  }
}

void MemoryLog::write(LogLevel, std::string_view, std::string_view category, std::string_view message) {
  const std::lock_guard lock(mutex_);
  lines_.push_back("[" + std::string(category) + "] " + std::string(message));
}
bool MemoryLog::contains(std::string_view text) const { return all().find(text) != std::string::npos; }
std::string MemoryLog::all() const {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const auto& line : lines_) text += line + "\n";
  return text;
}

std::vector<AudioObjectID> Machine::list(std::uint32_t selector) const {
  std::vector<AudioObjectID> ids;
  audio.readObjectIDs(systemObjectID, {selector}, ids);
  return ids;
}
std::string Machine::text(AudioObjectID object, std::uint32_t selector) const {
  std::optional<std::string> value;
  audio.readString(object, {selector}, value);
  return value.value_or("");
}
std::uint32_t Machine::number(AudioObjectID object, std::uint32_t selector) const {
  std::uint32_t value = 0;
  audio.readUInt32(object, {selector}, value);
  return value;
}
AudioObjectID Machine::device(const std::string& uid) const {
  for (const auto id : list(audio::devices)) {
    if (text(id, audio::deviceUID) == uid) return id;
  }
  return 0;
}
AudioObjectID Machine::process(const std::string& identifier) const {
  for (const auto id : list(audio::processObjectList)) {
    if (text(id, audio::processBundleID) == identifier) return id;
  }
  return 0;
}
AudioObjectID Machine::waitForProcess(const std::string& identifier) const {
  eventually([&] { return process(identifier) != 0; });
  return process(identifier);
}
bool Machine::waitForSound(const std::string& identifier) const {
  return eventually([&] {
    const auto found = process(identifier);
    return found != 0 && number(found, audio::processIsRunningOutput) == 1;
  });
}
std::string Machine::defaultOutput() const {
  return text(number(systemObjectID, audio::defaultOutputDevice), audio::deviceUID);
}

TapUnderTest::TapUnderTest(Machine& machine, const std::string& identifier, float gain, const std::string& output)
    : machine_(machine), state_(std::make_shared<State>()) {
  const auto need = [&](bool ok, const char* what) {
    if (!ok) throw std::runtime_error(std::string(what) + "\n" + machine.log.all());
  };
  state_->target = gain;
  state_->current = gain;
  TapDescription tap;
  tap.processes = {machine.waitForProcess(identifier)};
  tap.uuid = Uuid::random();
  tap.muteBehavior = MuteBehavior::mutedWhenTapped;
  tap.isPrivate = true;
  tap.isExclusive = false;
  need(machine.audio.createProcessTap(tap, tap_) == noErr, "no tap");
  AudioStreamBasicDescription format;
  need(machine.audio.readFormat(tap_, {audio::tapFormat}, format) == noErr, "no format");
  AggregateDescription device;
  device.name = "test-" + identifier;
  device.uid = "test." + tap.uuid.text();
  device.followsDefaultOutput = output.empty();
  device.mainDeviceUID = output.empty() ? machine.defaultOutput() : output;
  device.isPrivate = true;
  device.tapAutoStart = true;
  device.subDeviceUIDs = {device.mainDeviceUID};
  device.taps = {{tap.uuid.text(), true}};
  need(machine.audio.createAggregateDevice(device, device_) == noErr, "no aggregate device");
  need(eventually([&] { return machine.number(device_, audio::deviceIsAlive) == 1; }, std::chrono::seconds(2)),
       "the aggregate device does not come alive");
  const auto smoothing = static_cast<float>(1.0 - std::exp(-1.0 / (format.sampleRate * 0.03)));
  const auto block = [state = state_, smoothing](const AudioBufferList& input, const AudioBufferList& output_) {
    if (state->isStopped) state->wasCalledAfterStop = true;
    const auto& in = input.buffers[0];
    const auto& out = output_.buffers[0];
    const auto frames = std::min(in.byteCount, out.byteCount) / (2 * sizeof(float));
    float applied = state->current;
    const float target = state->target;
    for (std::size_t i = 0; i < frames; ++i) {
      applied += (target - applied) * smoothing;
      out.data[2 * i] = applied * in.data[2 * i];
      out.data[2 * i + 1] = applied * in.data[2 * i + 1];
    }
    state->current = applied;
    if (state->schedulingPolicy < 0) state->schedulingPolicy = sched_getscheduler(0);
    ++state->calls;
  };
  need(machine.audio.createIOProc(device_, "test", block, proc_) == noErr, "no IO block");
  need(machine.audio.startDevice(device_, proc_) == noErr, "not started");
}

TapUnderTest::~TapUnderTest() { end(); }

void TapUnderTest::end() {
  if (proc_ == 0) return;
  machine_.audio.stopDevice(device_, proc_, state_->current);
  state_->isStopped = true;
  machine_.audio.destroyIOProc(device_, proc_);
  machine_.audio.destroyAggregateDevice(device_);
  machine_.audio.destroyProcessTap(tap_);
  proc_ = 0;
}

}  // namespace quillmere::test
