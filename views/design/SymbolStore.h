// The drawn symbols and marks by name, as pictures in one colour.
// Drawings are SVG files in black; what is white in them is cut out.
#pragma once

#include <QBrush>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <functional>

namespace quillmere {

/// A system's own picture of a symbol, fitted into so many pixels: what covers is opaque, in whatever colour. Null
/// where the system has none of that name.
using SystemSymbols = std::function<QImage(const QString& name, QSize pixels, int weight)>;

/// The names as the files have them, without extension: symbols as "arrow.right", marks as "wordmark". [main]
class SymbolStore {
 public:
  /// Every symbol there is, in alphabetical order.
  [[nodiscard]] static QStringList symbolNames();
  /// Below the resources: where the drawing of a symbol or of a mark ("wordmark", "shush", "statusbaricon") lies.
  [[nodiscard]] static QString symbolPath(const QString& name);
  [[nodiscard]] static QString markPath(const QString& name);

  /// From now on symbols look as the system draws them, where it does; their sizes stay. Empty: ours alone. Before the
  /// first is drawn.
  static void useSystemSymbols(SystemSymbols symbols);

  /// The size of the drawing's own grid; empty when there is no such drawing.
  [[nodiscard]] static QSizeF gridSize(const QString& path);
  /// The drawing fitted into so many pixels and filled with ink; weight (CSS scale) makes its strokes lighter or
  /// heavier. Null, with one log line a path, when there is no such drawing.
  [[nodiscard]] static QImage draw(const QString& path, QSize pixels, const QBrush& ink, int weight = 500);
};

}  // namespace quillmere
