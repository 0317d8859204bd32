// What the status item's clicks and entries do.
#include "shell/StatusBarController.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/Percent.h"
#include "core/Product.h"
#include "core/Texts.h"
#include "core/VersionOrder.h"
#include "platform/WindowSystem.h"
#include "runtime/Threads.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {
constexpr const char* settingsSection = "Settings";
}  // namespace

StatusBarController::StatusBarController(MixerState& state, const Runtime& runtime, WindowSystem& windows,
                                         StatusBarIntents intents)
    : state_(state), runtime_(runtime), windows_(windows), intents_(std::move(intents)) {}

std::vector<StatusMenuEntry> StatusBarController::rebuildMenu() const {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  StatusMenuInput input;
  input.isWhisperMode = state_.isWhisperMode().get();
  input.sleepTimerEndsAt = state_.sleepTimerEndsAt().get();
  input.now = runtime_.clocks.now();
  input.profiles = state_.profiles().get();
  input.activeProfileID = state_.activeProfileID().get();
  const auto& latest = *state_.latestVersion();
  input.updateKnown = latest && isOutdated(appVersion(), *latest);
  return statusMenu(input);
}

void StatusBarController::perform(const StatusMenuEntry& entry, const std::string& activationToken) {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  switch (entry.action) {
    case StatusAction::none:
    case StatusAction::separator:
      break;
    case StatusAction::openMainWindow:
      intents_.openMainWindow({std::nullopt, activationToken});
      break;
    case StatusAction::toggleWhisper:
      state_.toggleWhisperMode();
      break;
    case StatusAction::sleepFor:
      state_.startSleepTimer(entry.tag);
      break;
    case StatusAction::cancelSleep:
      state_.cancelSleepTimer();
      break;
    case StatusAction::applyProfile:
      if (const auto id = Uuid::parse(entry.representedObject)) state_.applyProfile(*id);
      break;
    case StatusAction::openSettings:
      intents_.openMainWindow({settingsSection, activationToken});
      break;
    case StatusAction::openAbout:
      windows_.activate();
      windows_.showAboutPanel(activationToken);
      break;
    case StatusAction::checkForUpdates:
      state_.checkForUpdates();
      break;
    case StatusAction::quit:
      windows_.terminate();
      break;
  }
}

void StatusBarController::handleClick(const StatusItemActivation& activation) {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  intents_.togglePopover(activation);
}

void StatusBarController::handleScroll(int angleDelta) {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  // A panel that has nothing to tell tells nothing.
  const int step = angleDelta == 0 ? 0 : scroll_.step({.angle = angleDelta});
  if (step == 0) return;
  const auto change = static_cast<float>(gainPerScrollStep) * static_cast<float>(step);
  state_.setMasterGain(std::clamp(state_.masterGain().get() + change, 0.0F, 1.0F));
}

std::string StatusBarController::toolTip() const {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  std::string text = "quillmere · " + translated("%1%", std::to_string(percentOf(state_.masterGain().get())));
  if (const auto live = state_.liveBundleIDs()->size(); live > 0) {
    text += " · " + translatedCount("%1 live", "%1 live", live);
  }
  if (state_.isWhisperMode().get()) text += " · " + translated("Whisper Mode");
  return text;
}

std::vector<Subscription> StatusBarController::observeToolTip(const std::function<void()>& changed) {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  const auto follow = [changed](const auto& field) { return field.observe([changed](const auto&) { changed(); }); };
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(follow(state_.masterGain()));
  subscriptions.push_back(follow(state_.liveBundleIDs()));
  subscriptions.push_back(follow(state_.isWhisperMode()));
  return subscriptions;
}

void StatusBarController::observeMenu(const std::function<void()>& changed) {
  QUILLMERE_CHECK_ON(runtime_.main, "the status item is handled off the main thread");
  subscriptions_.push_back(state_.isWhisperMode().observe([changed](const auto&) { changed(); }));
  subscriptions_.push_back(state_.sleepTimerEndsAt().observe([changed](const auto&) { changed(); }));
  subscriptions_.push_back(state_.profiles().observe([changed](const auto&) { changed(); }));
  subscriptions_.push_back(state_.activeProfileID().observe([changed](const auto&) { changed(); }));
  subscriptions_.push_back(state_.latestVersion().observe([changed](const auto&) { changed(); }));
}

}  // namespace quillmere
