// First the clear surfaces, then the popover where they have found the pointer.
#include "layershell/LayerStage.h"

#include <LayerShellQt/Window>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWindow>
#include <chrono>
#include <utility>

#include "windows/PopoverPlacement.h"

namespace quillmere::layershell {

namespace {

using Surface = LayerShellQt::Window;

/// A compositor tells of the pointer with the first picture of a surface below it, or only with that of the next
/// surface. So the popover comes after this time, and goes to the pointer if it is told of that then.
constexpr auto firstPatience = std::chrono::milliseconds(60);
/// A pointer that comes later has not clicked the icon: the click was a key, or came over the bus.
constexpr auto pointerPatience = std::chrono::milliseconds(500);

Surface::Anchor anchorOf(EdgePlace::Edge edge) {
  switch (edge) {
    case EdgePlace::Edge::bottom:
      return Surface::AnchorBottom;
    case EdgePlace::Edge::left:
      return Surface::AnchorLeft;
    case EdgePlace::Edge::right:
      return Surface::AnchorRight;
    case EdgePlace::Edge::top:
      break;
  }
  return Surface::AnchorTop;
}

/// Covers panels too: a pointer over one of them is what is looked for.
void makeLayer(Backdrop& backdrop) {
  backdrop.setFlags(Qt::FramelessWindowHint);
  auto* surface = Surface::get(&backdrop);
  surface->setScope(QStringLiteral("quillmere-backdrop"));
  surface->setLayer(Surface::LayerOverlay);
  surface->setAnchors({Surface::AnchorTop, Surface::AnchorBottom, Surface::AnchorLeft, Surface::AnchorRight});
  surface->setExclusiveZone(-1);
  surface->setKeyboardInteractivity(Surface::KeyboardInteractivityNone);
  surface->setCloseOnDismissed(false);
}

}  // namespace

LayerStage::LayerStage(const Runtime& runtime) : runtime_(runtime) {}

LayerStage::~LayerStage() { stopWaiting(); }

void LayerStage::adopt(QWindow& window) {
  window_ = &window;
  window.setFlags(Qt::FramelessWindowHint);
  auto* surface = Surface::get(&window);
  surface->setScope(QStringLiteral("quillmere-popover"));
  surface->setLayer(Surface::LayerOverlay);
  // The keyboard is the popover's until it closes: no other window takes it, so no other way tells of a click outside.
  surface->setKeyboardInteractivity(Surface::KeyboardInteractivityExclusive);
  surface->setCloseOnDismissed(false);
  // The screen that is worked on.
  surface->setScreenConfiguration(Surface::ScreenFromCompositor);
}

void LayerStage::show(const PopoverPlace& /*place*/) {
  if (window_ == nullptr || isShown()) return;
  wished_ = runtime_.clocks.monotonicNow();
  isPointerFound_ = false;
  backdrops_.cover([this](Backdrop& backdrop, QScreen& screen) {
    makeLayer(backdrop);
    connect(&backdrop, &Backdrop::entered, this, [this, screen = QPointer(&screen)](QPoint at) {
      if (screen) pointerFound(*screen, at);
    });
    connect(&backdrop, &Backdrop::pressed, this, &PopoverStage::pressedOutside);
  });
  timer_ = runtime_.main.postAfter(firstPatience, [this] {
    timer_ = 0;
    place(std::nullopt, {});
  });
}

void LayerStage::pointerFound(const QScreen& screen, QPoint at) {
  const bool isLate = runtime_.clocks.monotonicNow() - wished_ > pointerPatience;
  if (isLate || std::exchange(isPointerFound_, true)) return;
  place(at, screen.size());
}

void LayerStage::place(const std::optional<QPoint>& pointer, QSize screen) {
  stopWaiting();
  if (window_ == nullptr) return;
  const auto where = edgePlace(pointer, window_->size(), screen);
  const bool isUpright = where.edge == EdgePlace::Edge::left || where.edge == EdgePlace::Edge::right;
  const auto end = isUpright ? (where.along ? Surface::AnchorTop : Surface::AnchorBottom)
                             : (where.along ? Surface::AnchorLeft : Surface::AnchorRight);
  const int along = where.along.value_or(popoverGap);
  auto* surface = Surface::get(window_);
  surface->setAnchors({anchorOf(where.edge), end});
  surface->setMargins(isUpright ? QMargins(popoverGap, along, popoverGap, along)
                                : QMargins(along, popoverGap, along, popoverGap));
  if (window_->isVisible()) {
    window_->requestUpdate();
    return;
  }
  window_->show();
  window_->requestActivate();
}

void LayerStage::hide() {
  stopWaiting();
  backdrops_.clear();
  if (window_ != nullptr) window_->hide();
}

bool LayerStage::isShown() const { return timer_ != 0 || (window_ != nullptr && window_->isVisible()); }

void LayerStage::release() {
  stopWaiting();
  backdrops_.clear();
  window_ = nullptr;
}

void LayerStage::stopWaiting() {
  if (timer_ != 0) runtime_.main.cancelTimer(std::exchange(timer_, 0));
}

}  // namespace quillmere::layershell
