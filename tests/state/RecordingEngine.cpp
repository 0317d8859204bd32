// What the recording engine keeps, hands on and tells. Compiled once for all tests that stand on one, since
// its stream is dear to compile.
#include "RecordingEngine.h"

#include <algorithm>
#include <chrono>
#include <ostream>
#include <utility>

namespace quillmere {

bool operator==(const EngineCall& left, const EngineCall& right) = default;

void PrintTo(const EngineCall& call, std::ostream* out) {
  switch (call.kind) {
    case EngineCall::Kind::gain:
      *out << "applyGain(" << call.gain << ", " << call.bundleID << ")";
      break;
    case EngineCall::Kind::routing:
      *out << "applyRouting(" << call.deviceUID.value_or("default") << ", " << call.bundleID << ")";
      break;
    case EngineCall::Kind::refresh:
      *out << "refresh()";
      break;
  }
}

EngineCall gainCall(const std::string& bundleID, float gain) {
  return {EngineCall::Kind::gain, bundleID, gain, std::nullopt};
}
EngineCall routingCall(const std::string& bundleID, std::optional<std::string> deviceUID) {
  return {EngineCall::Kind::routing, bundleID, 0.0F, std::move(deviceUID)};
}
EngineCall refreshCall() { return {}; }

RecordingEngine::RecordingEngine(Executor& background) : background_(background) {}
RecordingEngine::~RecordingEngine() = default;

void RecordingEngine::putBefore(std::shared_ptr<EngineCalls> behind) {
  behind_ = std::move(behind);
  behindChanges_ = behind_->changes().follow([this] { changes_.raise(); });
}

void RecordingEngine::applyGain(float gain, const std::string& bundleID) {
  add(gainCall(bundleID, gain));
  if (behind_) behind_->applyGain(gain, bundleID);
}

void RecordingEngine::applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) {
  add(routingCall(bundleID, deviceUID));
  if (behind_) behind_->applyRouting(deviceUID, bundleID);
}

void RecordingEngine::updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) {
  if (beforeProcessMap_) beforeProcessMap_();
  callsBeforeFirstProcessMap_ = callsBeforeFirstProcessMap_.value_or(calls_.size());
  if (behind_) behind_->updateProcessMap(snapshots);
  processes_ = std::move(snapshots);
}

std::set<std::string> RecordingEngine::activeBundleIDs() {
  auto active = active_;
  if (behind_) active.merge(behind_->activeBundleIDs());
  return active;
}

bool RecordingEngine::isHearing() { return behind_ && behind_->isHearing(); }

void RecordingEngine::refreshUnroutedSubgraphsForNewSystemDefault() {
  add(refreshCall());
  if (behind_) behind_->refreshUnroutedSubgraphsForNewSystemDefault();
}

Stream<std::map<std::string, float>> RecordingEngine::levelsStream() {
  using Levels = Stream<std::map<std::string, float>>;
  return Levels::produce(background_, [this](TaskContext& task, Levels::Writer& writer) -> Async<void> {
    while (!task.isCancelled()) {
      mostLevelsWaiting_ = std::max(mostLevelsWaiting_, writer.backlog());
      writer.yield({{"com.example.loud", 1.0F}});
      ++levelsTold_;
      co_await task.sleep(std::chrono::milliseconds(100));
    }
  });
}

void RecordingEngine::clearCalls() { calls_.clear(); }

std::optional<float> RecordingEngine::lastGain(const std::string& bundleID) const {
  const auto found = lastGains_.find(bundleID);
  return found == lastGains_.end() ? std::nullopt : std::optional(found->second);
}

void RecordingEngine::setActive(std::set<std::string> bundleIDs) {
  active_ = std::move(bundleIDs);
  changes_.raise();
}

void RecordingEngine::setBeforeProcessMap(std::function<void()> beforeProcessMap) {
  beforeProcessMap_ = std::move(beforeProcessMap);
}

void RecordingEngine::add(EngineCall call) {
  if (call.kind == EngineCall::Kind::gain) lastGains_[call.bundleID] = call.gain;
  calls_.push_back(std::move(call));
}

}  // namespace quillmere
