// Where the popover goes.
#include "windows/PopoverPlacement.h"

#include <algorithm>

namespace quillmere {

namespace {

/// Pixels between the popover and the icon or the edge it hangs from.
constexpr int gap = 6;

int limited(int value, int low, int high) { return std::max(low, std::min(value, high)); }

}  // namespace

QPoint popoverPosition(const std::optional<QRect>& icon, QSize size, const QRect& screen, const QRect& available) {
  const int left = available.left() + gap;
  const int right = available.right() + 1 - gap - size.width();
  const int top = available.top() + gap;
  const int bottom = available.bottom() + 1 - gap - size.height();
  if (!icon) {
    // Panels sit where space is missing; a panel at the top is the rule where none is seen.
    const bool panelBelow = screen.bottom() - available.bottom() > available.top() - screen.top();
    return {std::max(left, right), panelBelow ? std::max(top, bottom) : top};
  }
  const bool below = icon->center().y() < screen.center().y();
  const int x = icon->center().x() - size.width() / 2;
  const int y = below ? icon->bottom() + 1 + gap : icon->top() - gap - size.height();
  return {limited(x, left, right), limited(y, top, bottom)};
}

}  // namespace quillmere
