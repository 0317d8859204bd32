// The wave's formula, and a painter that works column by column:
// what a pixel gets depends only on its distance to the line, so one table of distances makes the whole picture.
#include "views/design/SignalWave.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace quillmere {
namespace {

constexpr double leastShare = 0.55;
constexpr int leastSegments = 80;
constexpr double pointsPerSegment = 1.4;

constexpr std::array<double, 3> timeRates{1.5, 2.4, 3.8};
constexpr std::array<double, 3> widthRates{3, 7, 13};
constexpr std::array<double, 3> offsets{0, 0.7, 1.4};
constexpr std::array<double, 3> weights{0.65, 0.25, 0.1};

struct Stroke {
  double extraWidth;
  double blur;
  double opacity;
};
constexpr std::array<Stroke, 3> strokes{{{5, 6, 0.55}, {2, 2, 0.6}, {0, 0, 1}}};
constexpr double haloReach = 3;  // of the widest blur; beyond it nothing is left to see

// The share of ink at a distance from the middle of a line, blurred as a Gaussian blurs it;
// without blur, the share of a pixel that the line covers.
double coverage(double distance, double width, double blur, double pixel) {
  const double half = width / 2;
  if (blur > 0) {
    const double root = blur * std::numbers::sqrt2;
    return 0.5 * (std::erf((half - distance) / root) + std::erf((half + distance) / root));
  }
  return std::clamp((half - distance) / pixel + 0.5, 0.0, 1.0) * std::min(1.0, width / pixel);
}

constexpr double stepsPerPixel = 4;

// What a pixel gets by its distance from the line, in steps of a quarter pixel. The last entry is clear.
class Inks {
 public:
  struct Look {
    double lineWidth;
    double scale;
    QRgb color;
    bool still;
    bool operator==(const Look&) const = default;
  };

  explicit Inks(const Look& look) : look_(look) {
    const double pixel = 1 / look.scale;
    const double opacity = qAlpha(look.color) / 255.0;
    reach_ = look.still ? look.lineWidth / 2 + pixel : waveReach(look.lineWidth);
    const auto count = static_cast<std::size_t>(reach_ * look.scale * stepsPerPixel) + 2;
    table_.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const double distance = static_cast<double>(i) / (look.scale * stepsPerPixel);
      double ink = 0;
      for (const Stroke& stroke : strokes) {
        if (look.still && stroke.blur > 0) continue;
        const double layer =
            coverage(distance, look.lineWidth + stroke.extraWidth, stroke.blur, pixel) * stroke.opacity * opacity;
        ink = layer + ink * (1 - layer);
      }
      // Premultiplied: every channel is scaled by the ink.
      const int alpha = static_cast<int>(std::lround(ink * 255));
      table_.push_back(qPremultiply(qRgba(qRed(look.color), qGreen(look.color), qBlue(look.color), alpha)));
    }
    table_.back() = 0;
  }

  [[nodiscard]] const Look& look() const { return look_; }
  /// In points.
  [[nodiscard]] double reach() const { return reach_; }
  [[nodiscard]] QRgb at(double steps) const {
    return table_[std::min(static_cast<std::size_t>(steps), table_.size() - 1)];
  }

 private:
  Look look_;
  double reach_ = 0;
  std::vector<QRgb> table_;
};

// The same from one frame to the next.
const Inks& inksFor(const Inks::Look& look) {
  static std::optional<Inks> last;
  if (!last || last->look() != look) last.emplace(look);
  return *last;
}

}  // namespace

SignalWave::SignalWave(int liveCount, double averageGain, double width, double height, double seconds)
    : width_(width), middle_(height * 0.5), heightScale_(height * 0.6), still_(liveCount <= 0) {
  segmentCount_ = still_ ? 1 : std::max(leastSegments, static_cast<int>(width / pointsPerSegment));
  amplitude_ = still_ ? 0 : breath(seconds) * gainShare(liveCount, averageGain);
  for (std::size_t i = 0; i < timeRates.size(); ++i) {
    phases_[i] = std::fmod(seconds * timeRates[i], 2 * std::numbers::pi) + offsets[i];
  }
}

std::vector<SignalWave::Point> SignalWave::points() const {
  std::vector<Point> result;
  result.reserve(static_cast<std::size_t>(segmentCount_) + 1);
  for (int i = 0; i <= segmentCount_; ++i) {
    const double u = static_cast<double>(i) / segmentCount_;
    result.push_back({u * width_, heightAt(u)});
  }
  return result;
}

double SignalWave::heightAt(double u) const {
  if (still_) return middle_;
  double w = 0;
  for (std::size_t i = 0; i < timeRates.size(); ++i) {
    w += std::sin(phases_[i] + u * widthRates[i]) * weights[i];
  }
  return middle_ + heightScale_ * std::sin(u * std::numbers::pi) * amplitude_ * w;
}

double SignalWave::gainShare(int liveCount, double averageGain) {
  const double share = std::min(liveCount / 3.0, 1.0) * averageGain * 1.4;
  return std::isnan(share) ? leastShare : std::clamp(share, leastShare, 1.0);
}

double SignalWave::breath(double seconds) {
  const double a = std::sin(seconds * 1.6) * 0.5 + 0.5;
  const double b = std::sin(seconds * 2.8 + 1.3) * 0.5 + 0.5;
  return (a * 0.7 + b * 0.3) * 0.45 + 0.55;
}

double waveReach(double lineWidth) { return (lineWidth + strokes[0].extraWidth) / 2 + haloReach * strokes[0].blur; }

QImage drawWave(const SignalWave& wave, QSize pixels, double scale, double margin, const QColor& color,
                double lineWidth) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  if (pixels.isEmpty() || !(scale > 0) || !(wave.width() > 0)) return image;

  // By its name: GCC 14 takes what is found by a temporary for a part of it.
  const Inks::Look look{lineWidth, scale, color.rgba(), wave.isStill()};
  const Inks& inks = inksFor(look);
  const int columns = pixels.width();
  const int rows = pixels.height();
  const double width = wave.width();
  // The line at the middle of each column and of one more at either side, and how it goes on beyond its ends.
  std::vector<double> heights;
  heights.reserve(static_cast<std::size_t>(columns) + 2);
  for (int column = -1; column <= columns; ++column) {
    heights.push_back(wave.heightAt(((column + 0.5) / scale - margin) / width));
  }
  auto* const firstLine = reinterpret_cast<QRgb*>(image.bits());
  const auto stride = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
  for (int column = 0; column < columns; ++column) {
    const double x = (column + 0.5) / scale - margin;
    const double* const height = heights.data() + column + 1;
    const double slope = (height[1] - height[-1]) / 2 * scale;
    // A round cap: beyond either end the distance is measured to the end of the line.
    const double beyond = std::max({-x, x - width, 0.0});
    const double tilt = beyond > 0 ? 1 : 1 / std::sqrt(1 + slope * slope);
    const double y = (beyond > 0 ? wave.heightAt(x < 0 ? 0 : 1) : *height) + margin;
    const double span = inks.reach() / tilt;
    const int top = std::max(0, static_cast<int>((y - span) * scale));
    const int bottom = std::min(rows - 1, static_cast<int>((y + span) * scale) + 1);
    QRgb* pixel = firstLine + top * stride + column;
    // In steps of the table; from one row to the next it is always the same way.
    const double way = tilt * stepsPerPixel;
    double across = (top + 0.5 - y * scale) * way;
    const double along = beyond * scale * stepsPerPixel;
    for (int row = top; row <= bottom; ++row, pixel += stride, across += way) {
      *pixel = inks.at(along > 0 ? std::hypot(across, along) : std::abs(across));
    }
  }
  return image;
}

}  // namespace quillmere
