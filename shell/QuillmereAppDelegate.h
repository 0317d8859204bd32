// The launch work and the life of the program on the desktop: one instance, accessory unless a window of its own shows.
#pragma once

#include <functional>
#include <set>
#include <string>

#include "runtime/Runtime.h"

namespace quillmere {

class WindowSystem;

/// What a launch needs of the rest of the shell.
struct LaunchSteps {
  /// True if this process is the only instance; otherwise the other one has been asked to come to the front.
  std::function<bool()> acquireInstance;
  std::function<void()> startUpdater;
  std::function<void()> createStatusItem;
};

/// [main] throughout. Outlives the window system's observers: it is made once and lives as long as the process.
class QuillmereAppDelegate {
 public:
  static const std::set<std::string>& trackedWindowIdentifiers();

  QuillmereAppDelegate(const Runtime& runtime, WindowSystem& windows, LaunchSteps steps);

  /// False if another instance runs: this one has been told to end and has shown nothing.
  bool applicationDidFinishLaunching();
  /// Closing every window leaves the status item running.
  [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return false; }
  void refreshActivationPolicy();
  /// On each appearance of the main window's content.
  void handleMainWindowAppear(bool hasCompletedOnboarding);
  /// The onboarding has been gone through: the main window takes its place.
  void finishOnboarding();

 private:
  Runtime runtime_;
  WindowSystem& windows_;
  LaunchSteps steps_;
};

}  // namespace quillmere
