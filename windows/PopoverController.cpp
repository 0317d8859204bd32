// The popover's life.
#include "windows/PopoverController.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <utility>

#include "windows/PopoverPlacement.h"
#include "windows/X11.h"

namespace quillmere {

namespace {
/// A popover that was just closed opens again without being built anew.
constexpr auto keepHidden = std::chrono::seconds(20);
/// The click on the icon takes the focus away first and then asks to toggle: both are one wish to close.
constexpr auto focusLossGrace = std::chrono::milliseconds(300);
}  // namespace

PopoverController::PopoverController(const Runtime& runtime, WindowFactory factory)
    : runtime_(runtime), scene_(runtime, std::move(factory), keepHidden) {
  scene_.onDropped([this] { Q_EMIT dropped(); });
  connect(&scene_, &Scene::lostFocus, this, [this] {
    // A menu of the popover's own takes the focus for a while; that is not a click outside.
    if (!isShown() || QGuiApplication::focusWindow() != nullptr) return;
    closedByFocusLoss_ = runtime_.clocks.monotonicNow();
    close();
  });
}

PopoverController::~PopoverController() = default;

void PopoverController::toggle(const std::optional<QRect>& anchor) {
  if (isShown()) {
    close();
  } else if (runtime_.clocks.monotonicNow() - closedByFocusLoss_ > focusLossGrace) {
    open(anchor);
  }
}

void PopoverController::close() { scene_.hide(); }

void PopoverController::open(const std::optional<QRect>& anchor) {
  anchorAtOpening_ = anchor;
  const bool isNew = scene_.window() == nullptr;
  auto& window = scene_.prepare();
  if (isNew) {
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window.installEventFilter(this);
    // The panel's height follows its content; the corner at the icon stays where it is.
    connect(&window, &QWindow::heightChanged, this, &PopoverController::place);
    connect(&window, &QWindow::widthChanged, this, &PopoverController::place);
  }
  place();
  if (!isShown()) x11::skipTaskBar(window);
  scene_.show();
}

void PopoverController::place() {
  auto* window = scene_.window();
  if (window == nullptr) return;
  auto* screen = QGuiApplication::screenAt(anchorAtOpening_ ? anchorAtOpening_->center() : QCursor::pos());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  window->setPosition(
      popoverPosition(anchorAtOpening_, window->size(), screen->geometry(), screen->availableGeometry()));
}

bool PopoverController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    close();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillmere
