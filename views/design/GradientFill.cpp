// Paints the gradient tile.
#include "views/design/GradientFill.h"

#include <QPainter>
#include <algorithm>

#include "views/design/BrandGradient.h"

namespace quillmere {

void GradientFill::setRadius(double radius) {
  if (radius_ == radius) return;
  radius_ = radius;
  Q_EMIT radiusChanged();
  repaint();
}

QImage GradientFill::paintPicture(QSize pixels, double scale) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  painter.setPen(Qt::NoPen);
  painter.setBrush(brandGradient::primary(boundingRect()));
  const double limit = std::min(radius_, std::min(width(), height()) / 2);
  painter.drawRoundedRect(boundingRect(), limit, limit);
  return image;
}

}  // namespace quillmere
