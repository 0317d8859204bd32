// The icon in the panel: left click for the popover, right click for the menu, the wheel for the master.
#pragma once

#include <QMenu>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>
#include <optional>
#include <vector>

#include "shell/StatusMenu.h"

class QActionGroup;

namespace quillmere {

/// What a status item asks of the program. [main]
struct StatusItemIntents {
  /// The menu as it should read at this moment.
  std::function<std::vector<StatusMenuEntry>()> menu;
  std::function<void(const StatusMenuEntry& entry)> perform;
  std::function<void()> primaryAction;
  /// Wheel steps over the icon, in eighths of a degree; positive is away from the user.
  std::function<void(int angleDelta)> scroll;
};

/// Made once a tray is there. [main]
class StatusItem final : public QObject {
  Q_OBJECT

 public:
  explicit StatusItem(StatusItemIntents intents);
  ~StatusItem() override;

  void show();
  /// Builds the menu anew from the intents. Some hosts show the menu before they ask for it, so it is kept up to date.
  void rebuildMenu();
  /// Where the icon is, as far as the desktop says: its rectangle, else the pointer while it is over a panel.
  [[nodiscard]] std::optional<QRect> anchor() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void applyTheme();
  void refreshTitles();
  void fill(QMenu& menu, const std::vector<StatusMenuEntry>& entries);

  StatusItemIntents intents_;
  std::vector<StatusMenuEntry> shown_;
  QMenu menu_;
  QSystemTrayIcon icon_;
};

}  // namespace quillmere
