// Paints the ring from the top, clockwise.
#include "views/design/RingArc.h"

#include <QConicalGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "views/design/Tokens.h"

namespace quillmere {
namespace {

constexpr double leastTrim = 0.001;
constexpr double top = 90;  // degrees, as QPainter counts: counter-clockwise from the right
constexpr double sixteenths = 16;

// sage at the top, clockwise to mint. The round cap at the start reaches back over the top:
// that little piece takes the start's colour, not the end's.
QBrush angularBrush(const QPointF& centre, double radius, double lineWidth) {
  const double cap = std::min(0.1, lineWidth / (2 * std::numbers::pi * radius));
  QConicalGradient gradient(centre, top);
  const QColor sage = toColor(design::colour::brandSage);
  gradient.setColorAt(1, sage);
  gradient.setColorAt(cap + 0.0005, toColor(design::colour::brandMint));
  gradient.setColorAt(cap, sage);
  gradient.setColorAt(0, sage);
  return gradient;
}

}  // namespace

double RingArc::trim(double progress) {
  return std::isnan(progress) ? leastTrim : std::clamp(progress, leastTrim, 1.0);
}

void RingArc::setProgress(double progress) {
  if (progress_ == progress) return;
  progress_ = progress;
  Q_EMIT progressChanged();
  repaint();
}

void RingArc::setTrack(const QColor& track) {
  if (track_ == track) return;
  track_ = track;
  Q_EMIT lookChanged();
  repaint();
}

void RingArc::setFill(const QColor& fill) {
  if (fill_ == fill) return;
  fill_ = fill;
  Q_EMIT lookChanged();
  repaint();
}

void RingArc::setUseGradient(bool useGradient) {
  if (useGradient_ == useGradient) return;
  useGradient_ = useGradient;
  Q_EMIT lookChanged();
  repaint();
}

void RingArc::setLineWidth(double width) {
  if (lineWidth_ == width) return;
  lineWidth_ = width;
  Q_EMIT lookChanged();
  repaint();
}

QImage RingArc::paintPicture(QSize pixels, double scale) {
  return drawRing({.diameter = std::min(width(), height()),
                   .lineWidth = lineWidth_,
                   .progress = progress_,
                   .track = track_,
                   .fill = fill_,
                   .useGradient = useGradient_},
                  pixels, scale);
}

QImage drawRing(const RingPicture& ring, QSize pixels, double scale) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const double radius = (ring.diameter - ring.lineWidth) / 2;
  if (!(radius > 0)) return image;
  const QPointF centre(pixels.width() / scale / 2, pixels.height() / scale / 2);
  const QRectF circle(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);

  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(ring.track, ring.lineWidth));
  painter.drawEllipse(circle);

  const QBrush brush = ring.useGradient ? angularBrush(centre, radius, ring.lineWidth) : QBrush(ring.fill);
  painter.setPen(QPen(brush, ring.lineWidth, Qt::SolidLine, Qt::RoundCap));
  const double sweep = RingArc::trim(ring.progress) * 360;
  painter.drawArc(circle, static_cast<int>(top * sixteenths),
                  -std::max(1, static_cast<int>(std::lround(sweep * sixteenths))));
  return image;
}

}  // namespace quillmere
