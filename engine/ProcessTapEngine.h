// Decides which applications have a tap subgraph: those whose gain differs from unity or that have an output of their
// own. Everything else plays untouched.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engine/CoreAudioProcessMonitor.h"
#include "engine/InputActivity.h"
#include "engine/ProcessTapSubgraph.h"
#include "engine/SubgraphBuilds.h"
#include "platform/AudioHardware.h"
#include "runtime/ChangeSignal.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// Callers get no result; failures end in the log.
///
/// The calls of one application take effect one after the other, each when the one before is through with the path that
/// it builds. Applications don't wait for one another: paths are built side by side, and one is given up when none has
/// come alive for two seconds.
class ProcessTapEngine {
 public:
  /// Makes the engine's queue. The hardware and the runtime's services outlive this.
  ProcessTapEngine(AudioHardware& hardware, const Runtime& runtime);
  /// Drops what is queued and tears down what is live. [any but engine]
  ~ProcessTapEngine();
  ProcessTapEngine(const ProcessTapEngine&) = delete;
  ProcessTapEngine& operator=(const ProcessTapEngine&) = delete;

  /// The process-wide instance; stops the process if none is installed. [any]
  static ProcessTapEngine& shared();
  /// Makes this the process-wide instance, for as long as it lives. [main]
  void install();

  /// Sets an application's linear gain, limited to 0..1, NaN counting as 1; unity without a route releases it. [any]
  void applyGain(float gain, const std::string& bundleID);
  /// Pins an application to a device; absent or empty follows the system default again. [any]
  void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID);
  /// Takes in the audio processes of the moment; routed applications that are new get their subgraph. [any]
  void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots);
  /// Rebuilds what follows the system default output, after that has changed. [any]
  void refreshUnroutedSubgraphsForNewSystemDefault();
  /// The applications whose subgraph hears sound, of those that the queue has made so far; waits for nothing. [any]
  [[nodiscard]] std::set<std::string> activeBundleIDs() const;
  /// Whether activeBundleIDs() may answer differently from now on without a word: cycles run, as the last call of it
  /// has found. [any]
  [[nodiscard]] bool isHearing() const;
  /// Raised when a subgraph has come whose cycles nobody has looked at yet. [any]
  [[nodiscard]] const ChangeSignal& changes() const { return changes_; }
  /// Tears down every subgraph, half built ones too; processes and routes stay known. Waits for what is queued before,
  /// but for no path to come alive. [any but engine]
  void stop();

  /// The engine's queue, for tests of what must run on it.
  [[nodiscard]] SerialQueue& queue() const { return *queue_; }
  /// Begins to build the subgraph of one application, which has none; stops the process off the queue. [engine]
  void spawnSubgraphLocked(const std::string& bundleID, float initialGain);
  /// Takes down one application's subgraph, if there is one; stops the process off the queue. Returns its target gain.
  /// [engine]
  std::optional<float> tearDownSubgraphLocked(const std::string& bundleID);

 private:
  template <typename Body>
  void queueBody(Body body);
  /// Queues one step of an application's story, which runs when its path is built. [any]
  void queueInTurn(const std::string& bundleID, Work step);
  /// Null: the path has failed. [engine]
  void takeBuilt(const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph);

  AudioHardware& hardware_;
  Clocks& clocks_;
  Logger log_;
  std::unique_ptr<SerialQueue> queue_;
  /// The processes as they were told last, whether the queue has taken them in yet or not.
  std::mutex toldMutex_;
  std::optional<std::vector<CoreAudioProcessMonitor::Snapshot>> told_;
  /// Set when this is going: what is still queued then does nothing.
  std::atomic<bool> going_{false};
  // The tables, touched on the queue only.
  std::map<std::string, std::set<AudioObjectID>> processMap_;
  std::map<std::string, std::unique_ptr<ProcessTapSubgraph>> subgraphs_;
  std::map<std::string, std::string> routingMap_;
  SubgraphBuilds builds_;
  /// What would be built now would be torn down at once.
  bool isStopping_ = false;

  /// Of every subgraph there is: for callers who don't wait for the queue.
  mutable std::mutex activitiesMutex_;
  mutable std::map<std::string, InputActivity> activities_;
  ChangeSignal changes_;
};

}  // namespace quillmere
