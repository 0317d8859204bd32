// How detection and what the user set meet: the merged list, the sounding applications, the restoration.
#include <cmath>
#include <unordered_map>

#include "runtime/OrderedBackground.h"
#include "state/AppState.h"
#include "state/EngineCalls.h"

namespace quillmere {

namespace {

/// An application counts as live for this long after it was last heard.
constexpr double liveSeconds = 1.5;
/// Stored gains this near to unity need no call.
constexpr float unityTolerance = 0.005F;

}  // namespace

std::vector<AudioApp> AppState::mergeKeepingState(const std::vector<AudioApp>& detected,
                                                  std::vector<AudioApp>& toRestore) {
  std::unordered_map<std::string, const AudioApp*> present;
  for (const auto& app : apps_.get()) present.emplace(app.bundleID, &app);

  std::vector<AudioApp> merged;
  merged.reserve(detected.size());
  for (const auto& app : detected) {
    const AudioApp* previous = nullptr;
    if (const auto found = present.find(app.bundleID); found != present.end()) {
      previous = found->second;
    } else if (const auto stored = persistedApps_.find(app.bundleID); stored != persistedApps_.end()) {
      previous = &stored->second;
      if (restoredEngineState_.insert(app.bundleID).second) toRestore.push_back(stored->second);
    }
    if (previous == nullptr) {
      merged.push_back(app);
    } else {
      merged.push_back({app.bundleID, app.name, previous->gain, previous->muted, previous->routedDeviceUID});
    }
  }
  return merged;
}

void AppState::restoreEngineState(const AudioApp& stored) {
  engineTasks_->post([engine = engine_, stored] {
    if (stored.routedDeviceUID) engine->applyRouting(stored.routedDeviceUID, stored.bundleID);
    if (stored.muted) {
      engine->applyGain(0.0F, stored.bundleID);
    } else if (std::abs(stored.gain - 1.0F) > unityTolerance) {
      engine->applyGain(stored.gain, stored.bundleID);
    }
  });
}

void AppState::noteSounding(const std::set<std::string>& sounding) {
  makeUpForLooksLeftOut();

  const auto now = runtime_.clocks.now();
  for (const auto& bundleID : sounding) lastSeenLive_[bundleID] = now;

  const auto oldest = now.advancedBy(-liveSeconds);
  std::erase_if(lastSeenLive_, [oldest](const auto& entry) { return entry.second < oldest; });

  std::set<std::string> live;
  for (const auto& [bundleID, seen] : lastSeenLive_) live.insert(live.end(), bundleID);
  liveBundleIDs_.set(std::move(live));
}

void AppState::makeUpForLooksLeftOut() {
  if (!restingLook_) return;
  const auto& clocks = runtime_.clocks;
  // They would all have found what that one has found, and this would have been the last of them.
  const auto lookBefore = clocks.monotonicNow() - CoreAudioProcessMonitor::period;
  if (lookBefore <= restingLook_->at) return;
  // That the clock has been set calls for a look: so it was since the one left out, or the host tells of no settings.
  const bool isTold = clocks.settings().raises() != restingLook_->clockSettings;
  const auto clock = isTold ? restingLook_->clock : clocks.setting();
  for (const auto& bundleID : restingLook_->sounding) lastSeenLive_[bundleID] = clock.at(lookBefore);
}

bool AppState::restUntilSoundingChanges(const std::set<std::string>& sounding) {
  restingLook_.reset();
  // Whoever is on the way out of the list goes by the clock alone, and a tap's cycles stop without a word.
  if (*liveBundleIDs_ != sounding || engine_->isHearing()) return false;
  const auto& clocks = runtime_.clocks;
  restingLook_ = RestingLook{sounding, clocks.monotonicNow(), clocks.setting(), clocks.settings().raises()};
  return true;
}

void AppState::takeMicrophoneUsers(const std::set<std::string>& bundleIDs) {
  if (micBundleIDs_.set(bundleIDs)) evaluateDucking();
}

}  // namespace quillmere
