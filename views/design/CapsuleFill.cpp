// Paints the capsule. A premultiplied picture whose opacity is nought but whose colours are not adds light.
#include "views/design/CapsuleFill.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

namespace quillmere {

void CapsuleFill::setLeading(const QColor& color) {
  if (leading_ == color) return;
  leading_ = color;
  Q_EMIT lookChanged();
  repaint();
}

void CapsuleFill::setTrailing(const QColor& color) {
  if (trailing_ == color) return;
  trailing_ = color;
  Q_EMIT lookChanged();
  repaint();
}

void CapsuleFill::setAddsLight(bool addsLight) {
  if (addsLight_ == addsLight) return;
  addsLight_ = addsLight;
  Q_EMIT lookChanged();
  repaint();
}

void CapsuleFill::setHoleCentre(double centre) {
  if (holeCentre_ == centre) return;
  holeCentre_ = centre;
  Q_EMIT lookChanged();
  if (holeDiameter_ > 0) repaint();
}

void CapsuleFill::setHoleDiameter(double diameter) {
  if (holeDiameter_ == diameter) return;
  holeDiameter_ = diameter;
  Q_EMIT lookChanged();
  repaint();
}

QImage CapsuleFill::paintPicture(QSize pixels, double scale) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  painter.setPen(Qt::NoPen);
  QLinearGradient fill(0, 0, width(), 0);
  fill.setColorAt(0, leading_);
  fill.setColorAt(1, trailing_);
  painter.setBrush(fill);
  const double radius = std::min(width(), height()) / 2;
  painter.drawRoundedRect(boundingRect(), radius, radius);
  if (holeDiameter_ > 0) {
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QPointF(holeCentre_, height() / 2), holeDiameter_ / 2, holeDiameter_ / 2);
  }
  painter.end();
  if (addsLight_ && !isSoftwareRendered()) {
    for (int row = 0; row < image.height(); ++row) {
      auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
      for (int column = 0; column < image.width(); ++column) line[column] &= RGB_MASK;
    }
  }
  return image;
}

}  // namespace quillmere
