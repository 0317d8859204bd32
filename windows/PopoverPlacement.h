// Where the popover goes: below or above the icon where that is known, else in the corner the panel suggests.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>
#include <vector>

namespace quillmere {

/// One screen: all of it, and what panels leave of it as far as they say so; in device-independent pixels.
struct ScreenSpace {
  QRect geometry;
  QRect available;
};

/// Top-left corner of a popover of `size`.
/// @param icon     the status item's rectangle, or a point-sized one where only the click is known; absent if neither
/// @param screen   the whole screen, and `available` what panels leave of it; both in device-independent pixels
[[nodiscard]] QPoint popoverPosition(const std::optional<QRect>& icon, QSize size, const QRect& screen,
                                     const QRect& available);

/// The icon as far as a click tells where it is: the pointer, or what the panel says of the click, if that is over a
/// panel. A place anywhere else says nothing. Where no panel is known, as in a Wayland session's X server, a click
/// close to the top or the bottom of a screen counts as one in the middle of a panel there.
[[nodiscard]] std::optional<QRect> panelAnchor(QPoint pointer, const std::optional<QPoint>& click,
                                               const std::vector<ScreenSpace>& screens);

/// A place that a compositor works out: on an edge, so far from its corner. It keeps clear of panels by itself.
struct EdgePlace {
  enum class Edge { top, bottom, left, right };
  /// The edge that the popover hangs from.
  Edge edge = Edge::top;
  /// Along that edge, from its left or upper end; absent for the far end, where tray icons are.
  std::optional<int> along;

  friend bool operator==(const EdgePlace&, const EdgePlace&) = default;
};

/// The popover's place by the pointer that has clicked the icon, in the screen's coordinates; absent if it isn't there.
[[nodiscard]] EdgePlace edgePlace(const std::optional<QPoint>& pointer, QSize size, QSize screen);

/// Pixels between the popover and the icon or the edge it hangs from.
inline constexpr int popoverGap = 6;

}  // namespace quillmere
