// The icon in the panel.
#include "shell/StatusItem.h"

#include <QActionGroup>
#include <QCursor>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QWheelEvent>
#include <utility>

#include "shell/BrandIconImage.h"
#include "shell/PanelTheme.h"

namespace quillmere {

namespace {

QString translated(const std::string& title) { return QCoreApplication::translate("StatusMenu", title.c_str()); }

QKeySequence keySequence(const std::string& key) {
  return key.empty() ? QKeySequence() : QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(key));
}

bool sameShape(const std::vector<StatusMenuEntry>& left, const std::vector<StatusMenuEntry>& right) {
  if (left.size() != right.size()) return false;
  for (std::size_t index = 0; index < left.size(); ++index) {
    if (left[index].action != right[index].action || left[index].hasSubmenu != right[index].hasSubmenu ||
        !sameShape(left[index].submenu, right[index].submenu)) {
      return false;
    }
  }
  return true;
}

}  // namespace

StatusItem::StatusItem(StatusItemIntents intents) : intents_(std::move(intents)) {
  icon_.setToolTip(QStringLiteral("quillmere"));
  applyTheme();
  connect(&PanelTheme::shared(), &PanelTheme::changed, this, &StatusItem::applyTheme);
  rebuildMenu();
  icon_.setContextMenu(&menu_);
  // Replacing the entries while the host opens the menu shows some hosts a broken one: only texts change here.
  connect(&menu_, &QMenu::aboutToShow, this, &StatusItem::refreshTitles);
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Context) intents_.primaryAction();
  });
  icon_.installEventFilter(this);
}

StatusItem::~StatusItem() = default;

void StatusItem::show() { icon_.show(); }

void StatusItem::applyTheme() {
  const auto color = PanelTheme::shared().foreground();
  icon_.setIcon(BrandIconImage::statusBarIcon(color));
  rebuildMenu();
}

void StatusItem::rebuildMenu() {
  auto entries = intents_.menu();
  if (entries == shown_) return;
  if (sameShape(entries, shown_) && menu_.isVisible()) return;
  shown_ = std::move(entries);
  menu_.clear();
  fill(menu_, shown_);
}

void StatusItem::fill(QMenu& menu, const std::vector<StatusMenuEntry>& entries) {
  for (const auto& entry : entries) {
    if (entry.action == StatusAction::separator) {
      menu.addSeparator();
      continue;
    }
    // A profile's name is the user's text, and an ampersand in it is no mnemonic.
    const bool isUsersText = entry.action == StatusAction::applyProfile;
    const auto title = isUsersText ? QString::fromStdString(entry.title).replace(QLatin1Char('&'), QLatin1String("&&"))
                                   : translated(entry.title);
    if (entry.hasSubmenu) {
      auto* submenu = menu.addMenu(title);
      submenu->setEnabled(!entry.submenu.empty());
      fill(*submenu, entry.submenu);
      continue;
    }
    auto* action = menu.addAction(title);
    action->setShortcut(keySequence(entry.key));
    if (isUsersText) {
      action->setCheckable(true);
      action->setChecked(entry.isOn);
    }
    if (entry.action == StatusAction::toggleWhisper) {
      action->setIcon(BrandIconImage::whisperMenuIcon(menu_.palette().color(QPalette::WindowText)));
    }
    connect(action, &QAction::triggered, this, [this, entry] { intents_.perform(entry); });
  }
}

void StatusItem::refreshTitles() {
  const auto entries = intents_.menu();
  if (!sameShape(entries, shown_)) return;
  const auto actions = menu_.actions();
  for (std::size_t index = 0; index < entries.size(); ++index) {
    auto* action = actions.at(static_cast<qsizetype>(index));
    if (entries[index].title != shown_[index].title) action->setText(translated(entries[index].title));
  }
  shown_ = entries;
}

std::optional<QRect> StatusItem::anchor() const {
  const auto geometry = icon_.geometry();
  if (geometry.isValid() && !geometry.isEmpty()) return geometry;
  const auto pointer = QCursor::pos();
  const auto* screen = QGuiApplication::screenAt(pointer);
  // A pointer on a panel has just clicked the icon; one anywhere else says nothing about where the icon is.
  if (screen != nullptr && !screen->availableGeometry().contains(pointer)) return QRect(pointer, QSize(1, 1));
  return std::nullopt;
}

bool StatusItem::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &icon_ && event->type() == QEvent::Wheel) {
    intents_.scroll(static_cast<QWheelEvent*>(event)->angleDelta().y());
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillmere
