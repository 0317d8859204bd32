// The program's own windows, by whatever they are drawn: another process, or this one.
#pragma once

#include <functional>
#include <string>

#include "platform/ActivationRequest.h"
#include "platform/StatusItem.h"
#include "platform/WindowSystem.h"

namespace quillmere {

/// What the windows ask of the program. [main]
struct WindowsIntents {
  std::function<void(const ActivationRequest& request)> openMainWindow;
  /// The main window has appeared.
  std::function<void()> mainWindowShown;
  /// The onboarding has been gone through.
  std::function<void()> finishOnboarding;
  /// Ends the program.
  std::function<void()> terminate;
  /// The program that draws is not the other half of this one: it has said to be of that version, empty for none. Not
  /// called where one process is the whole program.
  std::function<void(const std::string& version)> halvesDiffer;
};

/// [main] throughout.
class ProgramWindows : public WindowSystem {
 public:
  static constexpr const char* mainWindow = "main";
  static constexpr const char* onboardingWindow = "onboarding";

  using WindowSystem::open;
  /// The same, as somebody elsewhere has wished for it.
  virtual void open(const std::string& identifier, const ActivationRequest& request) = 0;
  virtual void togglePopover(const StatusItemActivation& activation) = 0;
  /// The icon in a tray of the old kind, which embeds a window; null on a host that knows no such tray.
  [[nodiscard]] virtual StatusItem* oldTray() = 0;
  /// Whether the old kind of tray is to be looked for, and used as `oldTray()`.
  virtual void setOldTrayWanted(bool isWanted) = 0;
};

}  // namespace quillmere
