// What the status item's clicks and entries do.
#include "shell/StatusBarController.h"

#include <algorithm>
#include <utility>

#include "core/Product.h"
#include "core/VersionOrder.h"
#include "platform/WindowSystem.h"
#include "runtime/Threads.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {
/// One notch of an ordinary wheel, in eighths of a degree.
constexpr int wheelNotch = 120;
constexpr float gainPerNotch = 0.02F;
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
  scrollRemainder_ += angleDelta;
  const int notches = scrollRemainder_ / wheelNotch;
  if (notches == 0) return;
  scrollRemainder_ -= notches * wheelNotch;
  state_.setMasterGain(std::clamp(state_.masterGain().get() + gainPerNotch * static_cast<float>(notches), 0.0F, 1.0F));
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
