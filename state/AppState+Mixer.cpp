// The plain mixer operations and the assignments with effects.
#include <algorithm>
#include <utility>

#include "engine/CoreAudioUtils.h"
#include "engine/HeadphoneMonitor.h"
#include "engine/SystemMasterVolume.h"
#include "runtime/OrderedBackground.h"
#include "runtime/Threads.h"
#include "state/AppState.h"
#include "state/EngineCalls.h"
#include "state/SettingsStore.h"

namespace quillmere {

void AppState::setGain(float gain, std::string bundleID) {
  QUILLMERE_CHECK_ON(runtime_.main, "setGain off the main thread");
  if (!changeApp(bundleID, [gain](AudioApp& app) { app.gain = gain; })) return;
  store_->persistAppsState(*apps_);
  sendGain(gain, bundleID);
}

void AppState::toggleMute(std::string bundleID) {
  QUILLMERE_CHECK_ON(runtime_.main, "toggleMute off the main thread");
  bool muted = false;
  if (!changeApp(bundleID, [&muted](AudioApp& app) { muted = app.muted = !app.muted; })) return;
  store_->persistAppsState(*apps_);
  sendGain(muted ? 0.0F : 1.0F, bundleID);
}

void AppState::setRouting(std::optional<std::string> deviceUID, std::string bundleID) {
  QUILLMERE_CHECK_ON(runtime_.main, "setRouting off the main thread");
  if (!changeApp(bundleID, [&deviceUID](AudioApp& app) { app.routedDeviceUID = deviceUID; })) return;
  store_->persistAppsState(*apps_);
  engineTasks_->post([engine = engine_, deviceUID = std::move(deviceUID), bundleID = std::move(bundleID)] {
    engine->applyRouting(deviceUID, bundleID);
  });
}

void AppState::setMasterGain(float gain) {
  QUILLMERE_CHECK_ON(runtime_.main, "setMasterGain off the main thread");
  masterGain_.set(gain);
  storeMasterGain();
  systemMaster_->write(gain);
}

void AppState::completeOnboarding() {
  QUILLMERE_CHECK_ON(runtime_.main, "completeOnboarding off the main thread");
  hasCompletedOnboarding_.set(true);
  machine_.defaults->set(SettingsStore::Keys::onboardingCompleted, true);
}

void AppState::setOutputDeviceUID(std::optional<std::string> deviceUID) {
  QUILLMERE_CHECK_ON(runtime_.main, "setOutputDeviceUID off the main thread");
  if (!outputDeviceUID_.set(deviceUID)) return;
  store_->persistOutputDevice(deviceUID);
  if (!deviceUID) return;

  // The change about to come is ours, not a loss of headphones.
  headphoneMonitor_->suppressNext = true;
  CoreAudioUtils::setSystemDefaultOutput(*machine_.audio, runtime_.log, *deviceUID);
  followDefaultOutput();
  engine_->refreshUnroutedSubgraphsForNewSystemDefault();
}

void AppState::listenForRefusals() {
  const auto listener = std::make_shared<const std::function<void()>>([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    // The field goes on showing the user's choice; the volume is that of the device that sounds.
    self->followDefaultOutput();
    self->engine_->refreshUnroutedSubgraphsForNewSystemDefault();
  });
  machine_.audio->addPropertyListener(systemObjectID, {audio::refusedDefaultOutput}, listener);
}

void AppState::setDuckRule(DuckRule rule) {
  QUILLMERE_CHECK_ON(runtime_.main, "setDuckRule off the main thread");
  duckTargetGain_->store(rule.targetGain);
  duckRule_.set(std::move(rule));
  store_->persistDuckRule(*duckRule_);
}

void AppState::setFocusCandidateBundleIDs(std::set<std::string> bundleIDs) {
  QUILLMERE_CHECK_ON(runtime_.main, "setFocusCandidateBundleIDs off the main thread");
  focusCandidateBundleIDs_.set(std::move(bundleIDs));
  store_->persistFocusCandidates(*focusCandidateBundleIDs_);
}

void AppState::setPauseOnHeadphoneDisconnect(bool pauses) {
  QUILLMERE_CHECK_ON(runtime_.main, "setPauseOnHeadphoneDisconnect off the main thread");
  pauseOnHeadphoneDisconnect_.set(pauses);
  machine_.defaults->set(SettingsStore::Keys::pauseOnHeadphoneDisconnect, pauses);
}

void AppState::setPomodoroFocusMinutes(int minutes) {
  QUILLMERE_CHECK_ON(runtime_.main, "setPomodoroFocusMinutes off the main thread");
  pomodoroFocusMinutes_.set(minutes);
}

void AppState::setPomodoroBreakMinutes(int minutes) {
  QUILLMERE_CHECK_ON(runtime_.main, "setPomodoroBreakMinutes off the main thread");
  pomodoroBreakMinutes_.set(minutes);
}

void AppState::setPomodoroFocusBundleID(std::optional<std::string> bundleID) {
  QUILLMERE_CHECK_ON(runtime_.main, "setPomodoroFocusBundleID off the main thread");
  pomodoroFocusBundleID_.set(std::move(bundleID));
}

bool AppState::changeApp(const std::string& bundleID, const std::function<void(AudioApp&)>& change) {
  auto apps = apps_.get();
  const auto app = std::ranges::find(apps, bundleID, &AudioApp::bundleID);
  if (app == apps.end()) return false;
  change(*app);
  apps_.set(std::move(apps));
  return true;
}

void AppState::sendGain(float gain, const std::string& bundleID) {
  engineTasks_->post([engine = engine_, gain, bundleID] { engine->applyGain(gain, bundleID); });
}

void AppState::restoreGains(const std::map<std::string, float>& saved) {
  auto apps = apps_.get();
  std::vector<std::pair<std::string, float>> restored;
  for (const auto& [bundleID, gain] : saved) {
    const auto app = std::ranges::find(apps, bundleID, &AudioApp::bundleID);
    if (app == apps.end()) continue;
    app->gain = gain;
    restored.emplace_back(bundleID, gain);
  }
  apps_.set(std::move(apps));
  for (const auto& [bundleID, gain] : restored) sendGain(gain, bundleID);
}

void AppState::storeMasterGain() {
  machine_.defaults->set(SettingsStore::Keys::masterGain, static_cast<double>(*masterGain_));
}

void AppState::followDefaultOutput() {
  systemMaster_->followDefaultOutput();
  if (const auto volume = systemMaster_->read()) masterGain_.set(*volume);
}

}  // namespace quillmere
