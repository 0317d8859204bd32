// Makes the program's windows with everything that stands behind them.
// Each window owns its presenters and its engine, so that dropping the window gives all of it back.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "runtime/Runtime.h"

class QQuickWindow;

namespace quillmere {

class MixerState;
struct BrowserTab;
class ViewSettings;
class Workspace;

/// What gestures in the views ask of the rest of the program. [main]
struct ViewIntents {
  /// Opens the main window and brings the program to the front.
  std::function<void()> openMainWindow;
  std::function<void()> quit;
  /// Brings a browser's tab to the front.
  std::function<void(const std::string& bundleID, const BrowserTab& tab)> activateTab;
};

/// [main] throughout. Windows may be made and destroyed any number of times; they don't need the factory afterwards.
class ViewFactory {
 public:
  /// The workspace, asked for icons from any thread, and the runtime's services outlive every window.
  ViewFactory(std::shared_ptr<MixerState> state, const Runtime& runtime, std::shared_ptr<ViewSettings> settings,
              Workspace& workspace, ViewIntents intents);
  ~ViewFactory();

  /// The mixer panel, not yet shown: 340 points wide, its height follows its content.
  [[nodiscard]] std::unique_ptr<QQuickWindow> makePopover();
  /// The window "quillmere", 1120 by 720 points, not yet shown.
  [[nodiscard]] std::unique_ptr<QQuickWindow> makeMainWindow();

 private:
  std::shared_ptr<MixerState> state_;
  Runtime runtime_;
  std::shared_ptr<ViewSettings> settings_;
  Workspace& workspace_;
  ViewIntents intents_;
};

}  // namespace quillmere
