// The program's own menus, on systems that show one menu bar for all windows of a program.
#pragma once

#include <QMenuBar>
#include <functional>

namespace quillmere {

/// What the entries do. [main]
struct ProgramMenuIntents {
  std::function<void()> showAboutPanel;
  std::function<void()> openMainWindow;
  std::function<void()> openSettings;
};

/// Belongs to no window, so it is there as long as the program is. The system itself puts the first and the last entry
/// where its users look for them. [main]
class ProgramMenu final {
 public:
  explicit ProgramMenu(const ProgramMenuIntents& intents);

  [[nodiscard]] QMenuBar& bar() { return bar_; }

 private:
  QMenuBar bar_;
};

}  // namespace quillmere
