// An engine that remembers what it was asked, in the order in which it was asked, and hands it on where there is
// another behind it. What it says is active, a test sets; what the other says counts too.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Executor.h"
#include "state/EngineCalls.h"

namespace quillmere {

struct EngineCall {
  enum class Kind { gain, routing, refresh };

  Kind kind = Kind::refresh;
  std::string bundleID;
  float gain = 0.0F;
  std::optional<std::string> deviceUID;

  friend bool operator==(const EngineCall&, const EngineCall&) = default;
  friend void PrintTo(const EngineCall& call, std::ostream* out) {
    switch (call.kind) {
      case Kind::gain:
        *out << "applyGain(" << call.gain << ", " << call.bundleID << ")";
        break;
      case Kind::routing:
        *out << "applyRouting(" << call.deviceUID.value_or("default") << ", " << call.bundleID << ")";
        break;
      case Kind::refresh:
        *out << "refresh()";
        break;
    }
  }
};

inline EngineCall gainCall(const std::string& bundleID, float gain) {
  return {EngineCall::Kind::gain, bundleID, gain, std::nullopt};
}
inline EngineCall routingCall(const std::string& bundleID, std::optional<std::string> deviceUID) {
  return {EngineCall::Kind::routing, bundleID, 0.0F, std::move(deviceUID)};
}
inline EngineCall refreshCall() { return {}; }

class RecordingEngine final : public EngineCalls {
 public:
  explicit RecordingEngine(Executor& background) : background_(background) {}
  void putBefore(std::shared_ptr<EngineCalls> behind) {
    behind_ = std::move(behind);
    behindChanges_ = behind_->changes().follow([this] { changes_.raise(); });
  }

  void applyGain(float gain, const std::string& bundleID) override {
    add(gainCall(bundleID, gain));
    if (behind_) behind_->applyGain(gain, bundleID);
  }
  void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) override {
    add(routingCall(bundleID, deviceUID));
    if (behind_) behind_->applyRouting(deviceUID, bundleID);
  }
  void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) override {
    if (beforeProcessMap_) beforeProcessMap_();
    callsBeforeFirstProcessMap_ = callsBeforeFirstProcessMap_.value_or(calls_.size());
    if (behind_) behind_->updateProcessMap(snapshots);
    processes_ = std::move(snapshots);
  }
  std::set<std::string> activeBundleIDs() override {
    auto active = active_;
    if (behind_) active.merge(behind_->activeBundleIDs());
    return active;
  }
  bool isHearing() override { return behind_ && behind_->isHearing(); }
  const ChangeSignal& changes() override { return changes_; }
  void refreshUnroutedSubgraphsForNewSystemDefault() override {
    add(refreshCall());
    if (behind_) behind_->refreshUnroutedSubgraphsForNewSystemDefault();
  }
  Stream<std::map<std::string, float>> levelsStream() override {
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

  [[nodiscard]] const std::vector<EngineCall>& calls() const { return calls_; }
  void clearCalls() { calls_.clear(); }
  /// The gain an application was sent last.
  [[nodiscard]] std::optional<float> lastGain(const std::string& bundleID) const {
    const auto found = lastGains_.find(bundleID);
    return found == lastGains_.end() ? std::nullopt : std::optional(found->second);
  }
  void setActive(std::set<std::string> bundleIDs) {
    active_ = std::move(bundleIDs);
    changes_.raise();
  }
  [[nodiscard]] const std::vector<CoreAudioProcessMonitor::Snapshot>& processes() const { return processes_; }
  /// Called at the head of each updateProcessMap().
  void setBeforeProcessMap(std::function<void()> beforeProcessMap) { beforeProcessMap_ = std::move(beforeProcessMap); }
  [[nodiscard]] std::size_t levelsTold() const { return levelsTold_; }
  /// How many levels ever waited to be taken when the next one came.
  [[nodiscard]] std::size_t mostLevelsWaiting() const { return mostLevelsWaiting_; }
  /// How many calls had come when the first process map came.
  [[nodiscard]] std::optional<std::size_t> callsBeforeFirstProcessMap() const { return callsBeforeFirstProcessMap_; }

 private:
  void add(EngineCall call) {
    if (call.kind == EngineCall::Kind::gain) lastGains_[call.bundleID] = call.gain;
    calls_.push_back(std::move(call));
  }

  Executor& background_;
  std::shared_ptr<EngineCalls> behind_;
  std::vector<EngineCall> calls_;
  std::map<std::string, float> lastGains_;
  std::set<std::string> active_;
  ChangeSignal changes_;
  Subscription behindChanges_;
  std::vector<CoreAudioProcessMonitor::Snapshot> processes_;
  std::optional<std::size_t> callsBeforeFirstProcessMap_;
  std::function<void()> beforeProcessMap_;
  std::size_t levelsTold_ = 0;
  std::size_t mostLevelsWaiting_ = 0;
};

}  // namespace quillmere
