// Where the popover goes.
#include "windows/PopoverPlacement.h"

#include <algorithm>

namespace quillmere {

namespace {

/// No panel is thicker than this.
constexpr int thickestPanel = 64;
constexpr int thinnestPanel = 24;

int limited(int value, int low, int high) { return std::max(low, std::min(value, high)); }

const ScreenSpace* screenAt(QPoint point, const std::vector<ScreenSpace>& screens) {
  const auto found = std::find_if(screens.begin(), screens.end(),
                                  [point](const ScreenSpace& each) { return each.geometry.contains(point); });
  return found == screens.end() ? nullptr : &*found;
}

/// The stretch across a panel of unknown thickness that was clicked in its middle; absent away from both edges.
std::optional<QRect> guessedPanel(QPoint click, const QRect& screen) {
  const int fromTop = click.y() - screen.top();
  const int fromBottom = screen.bottom() - click.y();
  const int thickness = limited(2 * std::min(fromTop, fromBottom), thinnestPanel, thickestPanel);
  if (fromTop < thickestPanel) return QRect(click.x(), screen.top(), 1, thickness);
  if (fromBottom < thickestPanel) return QRect(click.x(), screen.bottom() + 1 - thickness, 1, thickness);
  return std::nullopt;
}

}  // namespace

QPoint popoverPosition(const std::optional<QRect>& icon, QSize size, const QRect& screen, const QRect& available) {
  const int left = available.left() + popoverGap;
  const int right = available.right() + 1 - popoverGap - size.width();
  const int top = available.top() + popoverGap;
  const int bottom = available.bottom() + 1 - popoverGap - size.height();
  if (!icon) {
    // Panels sit where space is missing; a panel at the top is the rule where none is seen.
    const bool panelBelow = screen.bottom() - available.bottom() > available.top() - screen.top();
    return {std::max(left, right), panelBelow ? std::max(top, bottom) : top};
  }
  const bool below = icon->center().y() < screen.center().y();
  const int x = icon->center().x() - size.width() / 2;
  const int y = below ? icon->bottom() + 1 + popoverGap : icon->top() - popoverGap - size.height();
  return {limited(x, left, right), limited(y, top, bottom)};
}

std::optional<QRect> panelAnchor(QPoint pointer, const std::optional<QPoint>& click,
                                 const std::vector<ScreenSpace>& screens) {
  for (const auto& point : {std::optional(pointer), click}) {
    if (!point) continue;
    const auto* screen = screenAt(*point, screens);
    if (screen != nullptr && !screen->available.contains(*point)) return QRect(*point, QSize(1, 1));
  }
  const auto* screen = click ? screenAt(*click, screens) : nullptr;
  if (screen == nullptr || screen->available != screen->geometry) return std::nullopt;
  return guessedPanel(*click, screen->geometry);
}

EdgePlace edgePlace(const std::optional<QPoint>& pointer, QSize size, QSize screen) {
  if (!pointer) return {};
  using Edge = EdgePlace::Edge;
  const auto along = [](int place, int length, int whole) {
    return limited(place - length / 2, popoverGap, whole - popoverGap - length);
  };
  const int x = along(pointer->x(), size.width(), screen.width());
  const int y = along(pointer->y(), size.height(), screen.height());
  if (pointer->y() < thickestPanel) return {Edge::top, x};
  if (screen.height() - pointer->y() <= thickestPanel) return {Edge::bottom, x};
  if (pointer->x() < thickestPanel) return {Edge::left, y};
  if (screen.width() - pointer->x() <= thickestPanel) return {Edge::right, y};
  return {};
}

}  // namespace quillmere
