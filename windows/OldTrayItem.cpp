// The icon and its menu, which the toolkit draws.
#include "windows/OldTrayItem.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QPalette>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "windows/BrandIconImage.h"

namespace quillmere {

namespace {

/// An ampersand in a name is no mnemonic.
QString titleOf(const StatusMenuItem& item) {
  return QString::fromStdString(item.title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QKeySequence keySequence(const std::string& key) {
  return key.empty() ? QKeySequence() : QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(key));
}

bool haveStayed(const std::vector<StatusMenuItem>& items, const std::vector<StatusMenuItem>& others) {
  return std::equal(items.begin(), items.end(), others.begin(), others.end(),
                    [](const StatusMenuItem& item, const StatusMenuItem& other) {
                      return item.id == other.id && item.kind == other.kind &&
                             item.isChecked.has_value() == other.isChecked.has_value() &&
                             haveStayed(item.children, other.children);
                    });
}

bool isMarked(const std::vector<StatusMenuItem>& items, int id) {
  return std::any_of(items.begin(), items.end(), [id](const StatusMenuItem& item) {
    return item.id == id ? item.isChecked.value_or(false) : isMarked(item.children, id);
  });
}

}  // namespace

OldTrayItem::OldTrayItem() {
  connect(&watch_, &OldTrayWatch::available, this, &OldTrayItem::appear);
  connect(&menu_, &QMenu::aboutToShow, this, [this] {
    if (aboutToShow_) aboutToShow_();
  });
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Context && activated_) activated_({});
  });
  icon_.setContextMenu(&menu_);
  icon_.installEventFilter(this);
}

OldTrayItem::~OldTrayItem() = default;

std::optional<QRect> OldTrayItem::geometry() const {
  const auto geometry = icon_.geometry();
  return icon_.isVisible() && !geometry.isEmpty() ? std::optional(geometry) : std::nullopt;
}

void OldTrayItem::onAvailabilityChanged(std::function<void(bool)> callback) {
  availability_ = std::move(callback);
  watch_.start();
  if (!watch_.isAvailable()) availability_(false);
}

void OldTrayItem::show() {
  isWanted_ = true;
  if (watch_.isAvailable()) appear();
}

void OldTrayItem::appear() {
  if (isWanted_) {
    // Nobody tells what these trays look like.
    icon_.setIcon(BrandIconImage::statusBarIcon(panelInk(std::nullopt, {})));
    icon_.show();
  }
  if (availability_) availability_(true);
}

void OldTrayItem::setMenu(std::vector<StatusMenuItem> menu) {
  if (menu == items_) return;
  // Replacing the entries of a menu that is shown would take them from under the pointer.
  const bool stayed = haveStayed(menu, items_);
  items_ = std::move(menu);
  if (stayed) {
    refresh(menu_, items_);
  } else {
    menu_.clear();
    fill(menu_, items_);
  }
}

void OldTrayItem::fill(QMenu& menu, const std::vector<StatusMenuItem>& items) {
  for (const auto& item : items) {
    if (item.kind == StatusMenuItem::Kind::separator) {
      menu.addSeparator();
    } else if (item.kind == StatusMenuItem::Kind::submenu) {
      fill(*menu.addMenu(QString()), item.children);
    } else {
      auto* action = menu.addAction(QString());
      action->setShortcut(keySequence(item.key));
      action->setCheckable(item.isChecked.has_value());
      if (item.icon == StatusMenuIcon::whisper) {
        action->setIcon(BrandIconImage::whisperMenuIcon(menu_.palette().color(QPalette::WindowText)));
      }
      connect(action, &QAction::triggered, this, [this, action, id = item.id] {
        // The toolkit has moved the mark. Where it belongs, the state says: it comes with the next menu, if at all.
        action->setChecked(isMarked(items_, id));
        if (chosen_) chosen_(id, {});
      });
    }
  }
  refresh(menu, items);
}

void OldTrayItem::refresh(QMenu& menu, const std::vector<StatusMenuItem>& items) {
  const auto actions = menu.actions();
  for (std::size_t index = 0; index < items.size(); ++index) {
    auto* action = actions.at(static_cast<qsizetype>(index));
    const auto& item = items[index];
    if (item.kind == StatusMenuItem::Kind::separator) continue;
    action->setText(titleOf(item));
    if (item.kind == StatusMenuItem::Kind::submenu) {
      action->setEnabled(item.isEnabled && !item.children.empty());
      refresh(*action->menu(), item.children);
    } else {
      action->setEnabled(item.isEnabled);
      action->setChecked(item.isChecked.value_or(false));
    }
  }
}

void OldTrayItem::setToolTip(std::string text) { icon_.setToolTip(QString::fromStdString(text)); }

void OldTrayItem::onActivated(std::function<void(const StatusItemActivation&)> callback) {
  activated_ = std::move(callback);
}

void OldTrayItem::onMenuItemChosen(std::function<void(int, const std::string&)> callback) {
  chosen_ = std::move(callback);
}

void OldTrayItem::onMenuAboutToShow(std::function<void()> callback) { aboutToShow_ = std::move(callback); }

void OldTrayItem::onScroll(std::function<void(int)> callback) { scroll_ = std::move(callback); }

bool OldTrayItem::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &icon_ && event->type() == QEvent::Wheel) {
    if (scroll_) scroll_(static_cast<QWheelEvent*>(event)->angleDelta().y());
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillmere
