// Building and tearing down one application's audio path.
#include "engine/ProcessTapSubgraph.h"

#include <atomic>
#include <cmath>
#include <utility>

#include "core/Mixer.h"
#include "engine/CoreAudioUtils.h"
#include "engine/IOProcessor.h"

namespace quillmere {

namespace {

constexpr const char* ioQueueLabel = "app.quillmere.subgraph.io";
constexpr PropertyAddress tapFormatAddress{audio::tapFormat, audio::scopeGlobal, 0};

}  // namespace

/// What the IO block works on. The block owns a share of it, not of the subgraph: a callback never touches a reference
/// count, and can never be the one that lets go of the subgraph last and so run a tear-down on [audio]. Once the
/// subgraph is released, `released` makes a block that still fires return at once; the last share goes where the host
/// destroys the block, on [engine].
struct ProcessTapSubgraph::IOState {
  IOWords words;
  /// Written before the IO starts, and again whenever the tap is read at another rate: then on [main].
  std::atomic<float> coefficient{0.0F};
  std::atomic<bool> released{false};
};

ProcessTapSubgraph::ProcessTapSubgraph(AudioHardware& hardware, Clocks& clocks, std::string bundleID,
                                       std::vector<AudioObjectID> processObjectIDs, Logger log)
    : hardware_(hardware),
      clocks_(clocks),
      bundleID_(std::move(bundleID)),
      processObjectIDs_(std::move(processObjectIDs)),
      log_(std::move(log)),
      tapUUID_(Uuid::random()),
      io_(std::make_shared<IOState>()) {}

ProcessTapSubgraph::~ProcessTapSubgraph() {
  invalidate();
  tearDownAll();
  io_->released.store(true, std::memory_order_relaxed);
}

ProcessTapSubgraph::Progress ProcessTapSubgraph::activate(float initialGain,
                                                          const std::optional<std::string>& routedOutputUID) {
  // Both words: the first frame already plays at the requested gain, there is no fade-in.
  const float gain = Mixer{}.clampGain(initialGain);
  io_->words.targetGain.store(gain, std::memory_order_relaxed);
  io_->words.currentGain.store(gain, std::memory_order_relaxed);

  const bool isRouted = routedOutputUID && !routedOutputUID->empty();
  auto outputUID = routedOutputUID;
  if (!isRouted) {
    const auto device = CoreAudioUtils::systemDefaultOutputDeviceID(hardware_);
    outputUID = device ? CoreAudioUtils::readString(hardware_, *device, audio::deviceUID) : std::nullopt;
  }
  if (!outputUID) {
    log_.error(logText("[%s] no system default output", bundleID_.c_str()));
    return Progress::failed;
  }
  outputUID_ = std::move(*outputUID);

  if (!createTap()) return Progress::failed;
  if (!readTapFormat() || !createAggregate(outputUID_, !isRouted)) {
    destroyTap();
    return Progress::failed;
  }
  waitAnew();
  return proceed();
}

void ProcessTapSubgraph::waitAnew() { aliveDeadline_ = clocks_.monotonicNow() + aliveTimeout; }

ProcessTapSubgraph::Progress ProcessTapSubgraph::proceed() {
  // Looked at before the clock: where everything comes late, the call does too.
  if (!CoreAudioUtils::isAlive(hardware_, aggregateID_)) {
    if (clocks_.monotonicNow() < aliveDeadline_) return Progress::waiting;
    log_.error(logText("[%s] aggregate %u never became alive", bundleID_.c_str(), aggregateID_));
    tearDownAll();
    return Progress::failed;
  }
  if (!installIOProc() || !startIO()) {
    tearDownAll();
    return Progress::failed;
  }
  active_ = true;
  followTapFormat();
  log_.info(logText("[%s] subgraph live (tap %u, agg %u, %uch @ %fHz, out %s)", bundleID_.c_str(), tapID_, aggregateID_,
                    tapASBD_.channelsPerFrame, tapASBD_.sampleRate, outputUID_.c_str()));
  return Progress::live;
}

void ProcessTapSubgraph::invalidate() {
  if (!active_) return;
  active_ = false;
  tearDownAll();
  log_.info(logText("[%s] subgraph torn down (audio restored)", bundleID_.c_str()));
}

void ProcessTapSubgraph::setTargetGain(float gain) {
  io_->words.targetGain.store(std::fmin(gain, 1.0F), std::memory_order_relaxed);
}

float ProcessTapSubgraph::targetGain() const { return io_->words.targetGain.load(std::memory_order_relaxed); }

std::shared_ptr<const IOWords> ProcessTapSubgraph::words() const { return {io_, &io_->words}; }

float ProcessTapSubgraph::recentInputPeak() const { return io_->words.recentInputPeak.load(std::memory_order_relaxed); }

bool ProcessTapSubgraph::createTap() {
  TapDescription description;
  description.processes = processObjectIDs_;
  description.uuid = tapUUID_;
  // The application keeps playing directly while the path is being built, and is silent there only while it is read.
  description.muteBehavior = MuteBehavior::mutedWhenTapped;
  description.isPrivate = true;
  description.isExclusive = false;
  const Status status = hardware_.createProcessTap(description, tapID_);
  if (status == noErr && tapID_ != 0) return true;
  log_.error(logText("[%s] AudioHardwareCreateProcessTap failed (%d)", bundleID_.c_str(), status));
  return false;
}

bool ProcessTapSubgraph::readTapFormat() {
  if (hardware_.readFormat(tapID_, tapFormatAddress, tapASBD_) == noErr) {
    io_->coefficient.store(glideCoefficient(tapASBD_.sampleRate), std::memory_order_relaxed);
    return true;
  }
  log_.error(logText("[%s] failed to read tap format", bundleID_.c_str()));
  return false;
}

bool ProcessTapSubgraph::createAggregate(const std::string& outputUID, bool followsDefaultOutput) {
  AggregateDescription description;
  description.name = "quillmere-" + bundleID_;
  description.uid = "app.quillmere.aggregate." + tapUUID_.text();
  description.mainDeviceUID = outputUID;
  description.isPrivate = true;
  description.isStacked = false;
  description.tapAutoStart = true;
  description.subDeviceUIDs = {outputUID};
  description.taps = {{.uid = tapUUID_.text(), .driftCompensation = true}};
  description.followsDefaultOutput = followsDefaultOutput;
  description.targetGain = {io_, &io_->words.targetGain};
  const Status status = hardware_.createAggregateDevice(description, aggregateID_);
  if (status == noErr && aggregateID_ != 0) return true;
  log_.error(logText("[%s] AudioHardwareCreateAggregateDevice failed (%d)", bundleID_.c_str(), status));
  return false;
}

bool ProcessTapSubgraph::installIOProc() {
  IOProcID proc = 0;
  const Status status = hardware_.createIOProc(
      aggregateID_, ioQueueLabel,
      [state = io_](const AudioBufferList& input, const AudioBufferList& output) {
        if (state->released.load(std::memory_order_relaxed)) return;
        processIO(input, output, state->coefficient.load(std::memory_order_relaxed), state->words);
      },
      proc);
  if (status == noErr && proc != 0) {
    ioProcID_ = proc;
    return true;
  }
  log_.error(logText("[%s] AudioDeviceCreateIOProcIDWithBlock failed (%d)", bundleID_.c_str(), status));
  return false;
}

bool ProcessTapSubgraph::startIO() {
  const Status status = hardware_.startDevice(aggregateID_, *ioProcID_);
  if (status == noErr) return true;
  log_.error(logText("[%s] AudioDeviceStart failed (%d)", bundleID_.c_str(), status));
  return false;
}

void ProcessTapSubgraph::followTapFormat() {
  formatListener_ = std::make_shared<const std::function<void()>>(
      [&hardware = hardware_, tap = tapID_, weakState = std::weak_ptr<IOState>(io_)] {
        const auto state = weakState.lock();
        AudioStreamBasicDescription format;
        if (!state || hardware.readFormat(tap, tapFormatAddress, format) != noErr) return;
        state->coefficient.store(glideCoefficient(format.sampleRate), std::memory_order_relaxed);
      });
  hardware_.addPropertyListener(tapID_, tapFormatAddress, formatListener_);
  // It may have changed while the path was built.
  (*formatListener_)();
}

void ProcessTapSubgraph::destroyTap() {
  if (tapID_ == 0) return;
  if (formatListener_) hardware_.removePropertyListener(tapID_, tapFormatAddress, std::exchange(formatListener_, {}));
  hardware_.destroyProcessTap(tapID_);
  tapID_ = 0;
}

void ProcessTapSubgraph::tearDownAll() {
  // The IO first, then the device, then the tap: the application is heard on its own path again last of all.
  if (ioProcID_ && aggregateID_ != 0) {
    hardware_.stopDevice(aggregateID_, *ioProcID_, io_->words.currentGain.load(std::memory_order_relaxed));
    hardware_.destroyIOProc(aggregateID_, *ioProcID_);
  }
  ioProcID_.reset();
  if (aggregateID_ != 0) {
    hardware_.destroyAggregateDevice(aggregateID_);
    aggregateID_ = 0;
  }
  destroyTap();
}

}  // namespace quillmere
