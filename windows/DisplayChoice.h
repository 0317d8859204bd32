// Which kind of display the windows are drawn on.
// Why: docs/decisions/0020-the-popover-on-wayland.md
#pragma once

#include <string>

namespace quillmere {

/// What decides.
struct DisplayFacts {
  /// A Wayland compositor is there.
  bool hasWayland = false;
  /// It puts surfaces at the edges of the screen for us.
  bool hasLayerShell = false;
  /// An X server is there, by its name at least.
  bool hasXServer = false;
  /// Somebody has named the toolkit's platform already.
  bool isNamed = false;
};

/// What the toolkit's platform is to be, as its variable takes it; empty where it may choose itself.
[[nodiscard]] std::string platformFor(const DisplayFacts& facts);

/// Whether a Wayland compositor has the screen, also where the windows are drawn through its X server. [any]
[[nodiscard]] bool hasWaylandCompositor();

/// Before the toolkit's start. True where the layer shell is there and will be used. [main]
bool chooseDisplay();

}  // namespace quillmere
