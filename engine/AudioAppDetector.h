// Joins the audio processes with the running applications: what the mixer offers, what sounds, what listens.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "core/AudioApp.h"
#include "engine/CoreAudioProcessMonitor.h"
#include "platform/Workspace.h"

namespace quillmere {

class AudioAppDetector {
 public:
  struct DetectionResult {
    /// The applications to offer: those that sound first, then by name. Gain 1, unmuted, unrouted.
    std::vector<AudioApp> apps;
    /// Parent identifiers that run output now. May name applications that `apps` lacks.
    std::set<std::string> liveBundleIDs;
    /// Parent identifiers that run input now. May name applications that `apps` lacks.
    std::set<std::string> micBundleIDs;
    /// The raw list, for the engine's process map.
    std::vector<CoreAudioProcessMonitor::Snapshot> snapshots;

    friend bool operator==(const DetectionResult&, const DetectionResult&) = default;
  };

  /// All outlive every stream.
  AudioAppDetector(const AudioHardware& hardware, Workspace& workspace, Executor& background)
      : monitor_(hardware, background), workspace_(&workspace) {}

  /// A result at once and then every 150 ms, changed or not. A consumer that wants changes only gets one when it may be
  /// another. [any]
  [[nodiscard]] Stream<DetectionResult> runningAudioApps() const;

  /// The join itself; `running` in the system's order. [any]
  [[nodiscard]] static DetectionResult merge(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots,
                                             const std::vector<RunningApplication>& running);

  /// Never shown, never counted.
  [[nodiscard]] static const std::set<std::string>& hiddenBundleIDs();
  /// Shown as soon as they run, sounding or not.
  [[nodiscard]] static const std::set<std::string>& knownAudioApps();

 private:
  CoreAudioProcessMonitor monitor_;
  Workspace* workspace_;
};

}  // namespace quillmere
