// From the system's coverage to the views' pictures.
#include "app/macos/SymbolsOfTheSystem.h"

#include <QImage>
#include <QString>
#include <cstddef>

#include "platform/macos/MacSymbols.h"
#include "views/design/SymbolStore.h"

namespace quillmere {

namespace {

QImage picture(const QString& name, QSize pixels, int weight) {
  const auto mask = systemSymbol(name.toStdString(), pixels.width(), pixels.height(), weight);
  if (!mask) return {};
  QImage image(mask->width, mask->height, QImage::Format_ARGB32_Premultiplied);
  for (int row = 0; row < mask->height; ++row) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    const auto* coverage =
        mask->coverage.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(mask->width);
    for (int column = 0; column < mask->width; ++column) line[column] = qRgba(0, 0, 0, coverage[column]);
  }
  return image;
}

}  // namespace

void useSymbolsOfTheSystem() { SymbolStore::useSystemSymbols(picture); }

}  // namespace quillmere
