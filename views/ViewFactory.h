// Makes the program's windows with everything that stands behind them.
// Each window owns its presenters and its engine, so that dropping the window gives all of it back.
#pragma once

#include <memory>
#include <string>

#include "views/ViewServices.h"

class QQuickWindow;

namespace quillmere {

/// [main] throughout. Windows may be made and destroyed any number of times; they don't need the factory afterwards.
class ViewFactory {
 public:
  explicit ViewFactory(ViewServices services);
  ~ViewFactory();

  /// The mixer panel, not yet shown: 340 points wide, its height follows its content.
  [[nodiscard]] std::unique_ptr<QQuickWindow> makePopover();
  /// The window "quillmere", 1120 by 720 points, not yet shown. It shows the mixer until it is told another section.
  [[nodiscard]] std::unique_ptr<QQuickWindow> makeMainWindow();
  /// The first run's window, not yet shown: 640 by 600 points, never larger. Its end is told as an intent.
  [[nodiscard]] std::unique_ptr<QQuickWindow> makeOnboarding();
  /// Shows a section ("Settings") in a window of makeMainWindow(), shown yet or not; a text that names none changes
  /// nothing.
  static void showSection(QQuickWindow& mainWindow, const std::string& section);

 private:
  ViewServices services_;
};

}  // namespace quillmere
