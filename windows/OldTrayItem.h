// The icon in a tray of the old kind: left click for the popover, right click for the menu, the wheel for the master.
#pragma once

#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/StatusItem.h"
#include "windows/OldTrayWatch.h"

namespace quillmere {

/// [main]
class OldTrayItem final : public QObject, public StatusItem {
  Q_OBJECT

 public:
  OldTrayItem();
  ~OldTrayItem() override;

  /// Where the icon is, as far as the tray says.
  [[nodiscard]] std::optional<QRect> geometry() const;

  void onAvailabilityChanged(std::function<void(bool isAvailable)> callback) override;
  [[nodiscard]] bool isAvailable() const override { return watch_.isAvailable(); }
  void show() override;
  void setMenu(std::vector<StatusMenuItem> menu) override;
  void setToolTip(std::string text) override;
  void onActivated(std::function<void(const StatusItemActivation& activation)> callback) override;
  void onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) override;
  void onMenuAboutToShow(std::function<void()> callback) override;
  void onScroll(std::function<void(int angleDelta)> callback) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void appear();
  void build();
  void fill(QMenu& menu, const std::vector<StatusMenuItem>& items);
  /// Texts and marks of a menu whose entries have stayed.
  void refresh(QMenu& menu, const std::vector<StatusMenuItem>& items);

  OldTrayWatch watch_;
  bool isWanted_ = false;
  std::vector<StatusMenuItem> items_;
  QMenu menu_;
  QSystemTrayIcon icon_;
  std::function<void(bool)> availability_;
  std::function<void(const StatusItemActivation&)> activated_;
  std::function<void(int, const std::string&)> chosen_;
  std::function<void()> aboutToShow_;
  std::function<void(int)> scroll_;
};

}  // namespace quillmere
