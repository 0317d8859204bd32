// The join of audio processes and running applications.
#include "engine/AudioAppDetector.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "core/BundleID.h"
#include "core/TextOrder.h"

namespace quillmere {

const std::set<std::string>& AudioAppDetector::hiddenBundleIDs() {
  // The entry that ends in ".helper" never matches, because identifiers are cut before they are looked up here.
  static const std::set<std::string> identifiers{
      "app.quillmere.host",
      "com.apple.CoreSpeech",
      "com.apple.audiomxd",
      "com.apple.audio.Core-Audio-Driver-Service.helper",
      "com.apple.assistantd",
      "com.apple.accessibility.heard",
      "com.apple.universalaccessd",
      "com.apple.cloudpaird",
      "com.apple.controlcenter",
      "com.apple.loginwindow",
      "com.apple.mediaremoted",
      "com.apple.TelephonyUtilities",
      "com.apple.cmio.ContinuityCaptureAgent",
      "com.apple.avconferenced",
      "systemsoundserverd",
  };
  return identifiers;
}

const std::set<std::string>& AudioAppDetector::knownAudioApps() {
  static const std::set<std::string> identifiers{
      "com.spotify.client",    "com.apple.Music",
      "com.apple.Safari",      "com.google.Chrome",
      "com.brave.Browser",     "company.thebrowser.Browser",
      "us.zoom.xos",           "com.microsoft.teams2",
      "com.microsoft.teams",   "com.tinyspeck.slackmacgap",
      "com.hnc.Discord",       "com.apple.FaceTime",
      "com.apple.VoiceMemos",  "com.apple.Podcasts",
      "com.tdesktop.Telegram",
  };
  return identifiers;
}

Stream<AudioAppDetector::DetectionResult> AudioAppDetector::runningAudioApps() const {
  // Most polls find what the one before has found: a comparison costs less than a join.
  auto join = [&workspace = *workspace_, joined = std::optional<DetectionResult>(),
               joinedWith =
                   std::vector<RunningApplication>()](std::vector<CoreAudioProcessMonitor::Snapshot> list) mutable {
    auto running = workspace.runningApplications();
    if (!joined || joined->snapshots != list || joinedWith != running) {
      joined = merge(std::move(list), running);
      joinedWith = std::move(running);
    }
    return *joined;
  };
  return monitor_.joined<DetectionResult>({&workspace_->changes()}, std::move(join));
}

AudioAppDetector::DetectionResult AudioAppDetector::merge(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots,
                                                          const std::vector<RunningApplication>& running) {
  DetectionResult result;
  std::set<std::string> audioParents;
  for (const auto& snapshot : snapshots) {
    auto key = parentKey(snapshot.bundleID);
    if (hiddenBundleIDs().contains(key)) continue;
    if (snapshot.isRunningOutput) result.liveBundleIDs.insert(key);
    if (snapshot.isRunningInput) result.micBundleIDs.insert(key);
    audioParents.insert(std::move(key));
  }

  // In the order of the identifiers: what the stable sort below leaves open is at least the same at every poll.
  std::map<std::string, const RunningApplication*> candidates;
  for (const auto& application : running) {
    if (!application.bundleID) continue;
    const auto& bundleID = *application.bundleID;
    if (hiddenBundleIDs().contains(bundleID)) continue;
    if (!knownAudioApps().contains(bundleID) && !audioParents.contains(bundleID)) continue;
    candidates.emplace(bundleID, &application);
  }

  result.apps.reserve(candidates.size());
  for (const auto& [bundleID, application] : candidates) {
    AudioApp app;
    app.bundleID = bundleID;
    app.name = application->localizedName.value_or(bundleID);
    result.apps.push_back(std::move(app));
  }
  const auto isLive = [&](const AudioApp& app) { return result.liveBundleIDs.contains(app.bundleID); };
  const auto firstSilent = std::stable_partition(result.apps.begin(), result.apps.end(), isLive);
  const auto byName = [](const AudioApp& left, const AudioApp& right) {
    return compareNames(left.name, right.name) < 0;
  };
  std::stable_sort(result.apps.begin(), firstSilent, byName);
  std::stable_sort(firstSilent, result.apps.end(), byName);

  result.snapshots = std::move(snapshots);
  return result;
}

}  // namespace quillmere
