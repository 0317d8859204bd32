// Hands the moment to the wave's painter.
#include "views/design/WaveItem.h"

#include <algorithm>
#include <cmath>

#include "views/design/SignalWave.h"
#include "views/design/Tokens.h"

namespace quillmere {
namespace {

constexpr double stillOpacity = 0.5;

/// The rows with something in them: what is below the others need not be drawn again with every frame.
QImage withoutClearRows(const QImage& image) {
  const auto isClear = [&image](int row) {
    const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(row));
    return std::all_of(pixels, pixels + image.width(), [](QRgb pixel) { return pixel == 0; });
  };
  int top = 0;
  int bottom = image.height();
  while (top < bottom && isClear(top)) ++top;
  while (bottom > top && isClear(bottom - 1)) --bottom;
  QImage trimmed = image.copy(0, top, image.width(), bottom - top);
  trimmed.setOffset({0, top});
  return trimmed;
}

}  // namespace

WaveItem::WaveItem(QQuickItem* parent) : ImageItem(parent), color_(toColor(design::colour::brandSage)) {}

void WaveItem::setLiveCount(int count) {
  if (liveCount_ == count) return;
  liveCount_ = count;
  changed();
}

void WaveItem::setAverageGain(double gain) {
  if (averageGain_ == gain) return;
  averageGain_ = gain;
  changed();
}

void WaveItem::setColor(const QColor& color) {
  if (color_ == color) return;
  color_ = color;
  changed();
}

void WaveItem::setLineWidth(double width) {
  if (lineWidth_ == width) return;
  lineWidth_ = width;
  changed();
}

void WaveItem::setTime(double seconds) {
  if (time_ == seconds) return;
  time_ = seconds;
  Q_EMIT timeChanged();
  if (liveCount_ > 0) repaint();
}

QImage WaveItem::paintPicture(QSize pixels, double scale) {
  const SignalWave wave(liveCount_, averageGain_, width(), height(), time_);
  const QColor ink = wave.isStill() ? toColor(design::colour::textTertiary.at(stillOpacity)) : color_;
  return withoutClearRows(drawWave(wave, pixels, scale, margin(), ink, lineWidth_));
}

double WaveItem::margin() const { return std::ceil(waveReach(lineWidth_)); }

void WaveItem::changed() {
  Q_EMIT lookChanged();
  repaint();
}

}  // namespace quillmere
