// Where the popover goes: below or above the icon where that is known, else in the corner the panel suggests.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>

namespace quillmere {

/// Top-left corner of a popover of `size`.
/// @param icon     the status item's rectangle, or a point-sized one where only the click is known; absent if neither
/// @param screen   the whole screen, and `available` what panels leave of it; both in device-independent pixels
[[nodiscard]] QPoint popoverPosition(const std::optional<QRect>& icon, QSize size, const QRect& screen,
                                     const QRect& available);

}  // namespace quillmere
