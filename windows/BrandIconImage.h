// The program's own images at the sizes the desktop asks for.
#pragma once

#include <QIcon>
#include <QPixmap>

#include "core/PanelInk.h"

class QColor;

namespace quillmere {

struct BrandIconImage {
  /// The status item's image, drawn in `color`: the resource "statusbaricon" scaled to `height` device-independent
  /// pixels with its proportions kept; a filled circle of that diameter if the resource cannot be read.
  static QPixmap statusBar(int height, const QColor& color, qreal devicePixelRatio);
  /// The same at every size a tray may ask for, in an ink of the program's.
  static QIcon statusBarIcon(Ink ink);
  /// The application icon, square; empty if the resource is missing.
  static QPixmap dock(int size, qreal devicePixelRatio);
  /// The whisper mark as a menu image in `color`; empty if the resource is missing.
  static QIcon whisperMenuIcon(const QColor& color);
};

}  // namespace quillmere
