// Flags and a place.
#include "windows/PlacedStage.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <vector>

#include "windows/PopoverPlacement.h"
#include "windows/X11.h"

namespace quillmere {

namespace {

constexpr auto always = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

/// A tiling compositor leaves a window its size only where it has no other.
void holdSize(QWindow& window) {
  window.setMinimumSize(window.size());
  window.setMaximumSize(window.size());
}

std::vector<ScreenSpace> screens() {
  std::vector<ScreenSpace> spaces;
  for (const auto* screen : QGuiApplication::screens()) {
    spaces.push_back({screen->geometry(), screen->availableGeometry()});
  }
  return spaces;
}

}  // namespace

void PlacedStage::adopt(QWindow& window) {
  window_ = &window;
  // A tiling Wayland compositor centres what it manages for its X server, wherever that wants to be. What it doesn't
  // manage it leaves in place, over everything.
  isUnmanaged_ = x11::isOfWlroots();
  hasDeafDesktop_ = x11::isOfGnome();
  // The keyboard is for what looks like a window.
  window.setFlags(always | (isUnmanaged_ ? Qt::Window | Qt::BypassWindowManagerHint : Qt::Tool));
  if (isUnmanaged_) window.installEventFilter(this);
  // The panel's height follows its content; the corner at the icon stays where it is.
  connect(&window, &QWindow::heightChanged, this, &PlacedStage::place);
  connect(&window, &QWindow::widthChanged, this, &PlacedStage::place);
}

void PlacedStage::show(const PopoverPlace& where) {
  if (window_ == nullptr) return;
  anchor_ = where.icon ? where.icon : panelAnchor(QCursor::pos(), where.click, screens());
  place();
  if (isUnmanaged_) {
    // Nobody tells of a click beside such a window either.
    backdrops_.cover([this](Backdrop& backdrop, QScreen&) {
      backdrop.setFlags(always | Qt::ToolTip | Qt::BypassWindowManagerHint);
      connect(&backdrop, &Backdrop::pressed, this, &PopoverStage::pressedOutside);
    });
    window_->show();
    return;
  }
  if (!isShown()) x11::skipTaskBar(*window_);
  if (hasDeafDesktop_) {
    backdrops_.cover([this](Backdrop& backdrop, QScreen&) {
      backdrop.setFlags(Qt::Window | Qt::FramelessWindowHint);
      x11::lieOnDesktop(backdrop);
      connect(&backdrop, &Backdrop::pressed, this, &PopoverStage::pressedOutside);
    });
  }
  window_->show();
  window_->raise();
  window_->requestActivate();
}

void PlacedStage::hide() {
  if (window_ != nullptr) {
    if (isUnmanaged_) window_->setKeyboardGrabEnabled(false);
    window_->hide();
  }
  backdrops_.clear();
}

void PlacedStage::release() {
  window_ = nullptr;
  backdrops_.clear();
}

bool PlacedStage::eventFilter(QObject* watched, QEvent* event) {
  // The X server's focus is not ours to take; a grab of the keyboard is, once the window is seen.
  if (event->type() == QEvent::Expose && window_ != nullptr && window_->isExposed()) {
    window_->setKeyboardGrabEnabled(true);
  }
  return PopoverStage::eventFilter(watched, event);
}

bool PlacedStage::isShown() const { return window_ != nullptr && window_->isVisible(); }

void PlacedStage::place() {
  if (window_ == nullptr) return;
  if (QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
    holdSize(*window_);
    return;
  }
  auto* screen = QGuiApplication::screenAt(anchor_ ? anchor_->center() : QCursor::pos());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  window_->setPosition(popoverPosition(anchor_, window_->size(), screen->geometry(), screen->availableGeometry()));
}

}  // namespace quillmere
