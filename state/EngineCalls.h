// What the state asks of the audio engine, and nothing more: the seam that tests listen at.
// In the program the driver client and its engine answer.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/CoreAudioProcessMonitor.h"
#include "runtime/Stream.h"

namespace quillmere {

class DriverClient;

/// No call waits for the engine: work is queued, answers are what it has come to so far.
class EngineCalls {
 public:
  virtual ~EngineCalls() = default;
  /// [any]
  virtual void applyGain(float gain, const std::string& bundleID) = 0;
  /// Absent follows the system default output. [any]
  virtual void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) = 0;
  /// [any]
  virtual void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) = 0;
  /// The applications whose tap hears sound. [any]
  [[nodiscard]] virtual std::set<std::string> activeBundleIDs() = 0;
  /// Whether activeBundleIDs() may answer differently from now on without a word, as its last call has found. [any]
  [[nodiscard]] virtual bool isHearing() = 0;
  /// Raised where it does so otherwise. Lives as long as this. [any]
  [[nodiscard]] virtual const ChangeSignal& changes() = 0;
  /// After the system default output has changed. [any]
  virtual void refreshUnroutedSubgraphsForNewSystemDefault() = 0;
  /// [any]
  [[nodiscard]] virtual Stream<std::map<std::string, float>> levelsStream() = 0;
};

/// The calls answered by `driver`, which outlives them.
[[nodiscard]] std::shared_ptr<EngineCalls> engineCallsThrough(DriverClient& driver);

}  // namespace quillmere
