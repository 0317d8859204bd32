// The launch work and the life of the program on the desktop.
#include "shell/QuillmereAppDelegate.h"

#include <algorithm>
#include <utility>

#include "platform/WindowSystem.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {
constexpr const char* mainWindow = "main";
constexpr const char* onboardingWindow = "onboarding";
/// Lets the main window's closing settle before the onboarding takes its place.
constexpr auto onboardingDelay = std::chrono::milliseconds(50);
}  // namespace

const std::set<std::string>& QuillmereAppDelegate::trackedWindowIdentifiers() {
  static const std::set<std::string> identifiers{mainWindow, onboardingWindow};
  return identifiers;
}

QuillmereAppDelegate::QuillmereAppDelegate(const Runtime& runtime, WindowSystem& windows, LaunchSteps steps)
    : runtime_(runtime), windows_(windows), steps_(std::move(steps)) {}

bool QuillmereAppDelegate::applicationDidFinishLaunching() {
  QUILLMERE_CHECK_ON(runtime_.main, "the launch is handled off the main thread");
  if (!steps_.acquireInstance()) {
    windows_.terminate();
    return false;
  }
  windows_.setActivationPolicy(ActivationPolicy::accessory);
  steps_.startUpdater();
  // Through the queue: the status item comes up just after launch has finished, not within it.
  runtime_.main.post(steps_.createStatusItem);
  windows_.onWindowBecameKey([this](const std::string& identifier) {
    if (trackedWindowIdentifiers().contains(identifier)) refreshActivationPolicy();
  });
  windows_.onWindowWillClose([this](const std::string& identifier) {
    if (!trackedWindowIdentifiers().contains(identifier)) return;
    // The closing window still counts as visible until the notification has been handled.
    runtime_.main.post([this] { refreshActivationPolicy(); });
  });
  return true;
}

void QuillmereAppDelegate::refreshActivationPolicy() {
  QUILLMERE_CHECK_ON(runtime_.main, "the launch is handled off the main thread");
  const auto windows = windows_.windows();
  const bool anyTracked = std::any_of(windows.begin(), windows.end(), [](const WindowInfo& window) {
    return window.isVisible && trackedWindowIdentifiers().contains(window.identifier);
  });
  const auto wanted = anyTracked ? ActivationPolicy::regular : ActivationPolicy::accessory;
  if (windows_.activationPolicy() != wanted) windows_.setActivationPolicy(wanted);
}

void QuillmereAppDelegate::handleMainWindowAppear(bool hasCompletedOnboarding) {
  QUILLMERE_CHECK_ON(runtime_.main, "the launch is handled off the main thread");
  // A build without an onboarding keeps its main window: closing it would leave a first run with nothing to look at.
  if (hasCompletedOnboarding || !windows_.canOpen(onboardingWindow)) {
    runtime_.main.post([this] {
      windows_.activate();
      windows_.orderFront(mainWindow);
    });
    return;
  }
  runtime_.main.post([this] { windows_.close(mainWindow); });
  runtime_.main.postAfter(onboardingDelay, [this] {
    windows_.open(onboardingWindow);
    windows_.activate();
  });
}

void QuillmereAppDelegate::finishOnboarding() {
  QUILLMERE_CHECK_ON(runtime_.main, "the onboarding is ended off the main thread");
  windows_.close(onboardingWindow);
  windows_.open(mainWindow);
  windows_.activate();
}

}  // namespace quillmere
