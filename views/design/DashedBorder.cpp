// Paints the dashes.
#include "views/design/DashedBorder.h"

#include <QPainter>

namespace quillmere {

namespace {

constexpr double lineWidth = 1.0;
/// In widths of the line.
constexpr double dash = 4.0;
constexpr double gap = 3.0;

}  // namespace

void DashedBorder::setRadius(double radius) {
  if (radius_ == radius) return;
  radius_ = radius;
  Q_EMIT lookChanged();
  repaint();
}

void DashedBorder::setColor(const QColor& color) {
  if (color_ == color) return;
  color_ = color;
  Q_EMIT lookChanged();
  repaint();
}

QImage DashedBorder::paintPicture(QSize pixels, double scale) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  QPen pen(color_, lineWidth);
  pen.setDashPattern({dash, gap});
  pen.setCapStyle(Qt::FlatCap);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  constexpr double inset = lineWidth / 2;
  painter.drawRoundedRect(boundingRect().adjusted(inset, inset, -inset, -inset), radius_ - inset, radius_ - inset);
  return image;
}

}  // namespace quillmere
