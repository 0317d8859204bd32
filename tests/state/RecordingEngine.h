// An engine that remembers what it was asked, in the order in which it was asked, and hands it on where there is
// another behind it. What it says is active, a test sets; what the other says counts too.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "runtime/ChangeSignal.h"
#include "runtime/Executor.h"
#include "state/EngineCalls.h"

namespace quillmere {

struct EngineCall {
  enum class Kind { gain, routing, refresh };

  Kind kind = Kind::refresh;
  std::string bundleID;
  float gain = 0.0F;
  std::optional<std::string> deviceUID;

  friend bool operator==(const EngineCall& left, const EngineCall& right);
  friend void PrintTo(const EngineCall& call, std::ostream* out);
};

EngineCall gainCall(const std::string& bundleID, float gain);
EngineCall routingCall(const std::string& bundleID, std::optional<std::string> deviceUID);
EngineCall refreshCall();

class RecordingEngine final : public EngineCalls {
 public:
  explicit RecordingEngine(Executor& background);
  ~RecordingEngine() override;
  RecordingEngine(const RecordingEngine&) = delete;
  RecordingEngine& operator=(const RecordingEngine&) = delete;
  void putBefore(std::shared_ptr<EngineCalls> behind);

  void applyGain(float gain, const std::string& bundleID) override;
  void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) override;
  void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) override;
  std::set<std::string> activeBundleIDs() override;
  bool isHearing() override;
  const ChangeSignal& changes() override { return changes_; }
  void refreshUnroutedSubgraphsForNewSystemDefault() override;
  Stream<std::map<std::string, float>> levelsStream() override;

  [[nodiscard]] const std::vector<EngineCall>& calls() const { return calls_; }
  void clearCalls();
  /// The gain an application was sent last.
  [[nodiscard]] std::optional<float> lastGain(const std::string& bundleID) const;
  void setActive(std::set<std::string> bundleIDs);
  [[nodiscard]] const std::vector<CoreAudioProcessMonitor::Snapshot>& processes() const { return processes_; }
  /// Called at the head of each updateProcessMap().
  void setBeforeProcessMap(std::function<void()> beforeProcessMap);
  [[nodiscard]] std::size_t levelsTold() const { return levelsTold_; }
  /// How many levels ever waited to be taken when the next one came.
  [[nodiscard]] std::size_t mostLevelsWaiting() const { return mostLevelsWaiting_; }
  /// How many calls had come when the first process map came.
  [[nodiscard]] std::optional<std::size_t> callsBeforeFirstProcessMap() const { return callsBeforeFirstProcessMap_; }

 private:
  void add(EngineCall call);

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
