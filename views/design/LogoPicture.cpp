// Paints the tile to the told shares.
#include "views/design/LogoPicture.h"

#include <QPainter>
#include <algorithm>
#include <array>

#include "views/design/BrandGradient.h"
#include "views/design/Tokens.h"

namespace quillmere {
namespace {

constexpr double rimOpacity = 0.15;
constexpr double rimWidth = 0.5;
constexpr double stackWidth = 0.66;
constexpr double stackHeight = 0.62;
constexpr double spacing = 0.13;
constexpr double trackHeight = 0.05;
constexpr double leastTrack = 1.5;
constexpr double trackOpacity = 0.5;
constexpr double knobDiameter = 0.13;
constexpr std::array<double, 3> knobs{0.62, 0.32, 0.78};

}  // namespace

QImage LogoPicture::paintPicture(QSize pixels, double scale) { return drawLogo(width(), pixels, scale); }

QImage drawLogo(double side, QSize pixels, double scale) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  const QRectF tile(0, 0, side, side);
  const double corner = side * LogoPicture::cornerShare;
  painter.setPen(Qt::NoPen);
  painter.setBrush(brandGradient::primary(tile));
  painter.drawRoundedRect(tile, corner, corner);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(toColor(design::colour::white.at(rimOpacity)), rimWidth));
  const double inset = rimWidth / 2;
  painter.drawRoundedRect(tile.adjusted(inset, inset, -inset, -inset), corner - inset, corner - inset);

  painter.setPen(Qt::NoPen);
  const double width = side * stackWidth;
  const double left = (side - width) / 2;
  const double rowHeight = side * (stackHeight - 2 * spacing) / 3;
  const double thickness = std::max(side * trackHeight, leastTrack);
  double middle = side * (1 - stackHeight) / 2 + rowHeight / 2;
  for (const double knob : knobs) {
    painter.setBrush(toColor(design::colour::white.at(trackOpacity)));
    painter.drawRoundedRect(QRectF(left, middle - thickness / 2, width, thickness), thickness / 2, thickness / 2);
    painter.setBrush(toColor(design::colour::white));
    painter.drawEllipse(QPointF(left + width * knob, middle), side * knobDiameter / 2, side * knobDiameter / 2);
    middle += rowHeight + side * spacing;
  }
  return image;
}

}  // namespace quillmere
