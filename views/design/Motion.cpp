// The damped oscillator, and its way as a chain of cubic pieces.
#include "views/design/Motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "views/design/Appearance.h"

namespace quillmere {
namespace {

constexpr double restShare = 0.001;
// Qt keeps room for ten pieces of a curve and writes beyond it without a word.
constexpr int pieces = 9;
constexpr double leastDamping = 0.05;

double limitedDamping(double dampingFraction) { return std::clamp(dampingFraction, leastDamping, 0.999); }

// With time in units of 1 / (undamped angular frequency).
double position(double tau, double damping) {
  const double swing = std::sqrt(1 - damping * damping);
  return 1 - std::exp(-damping * tau) * (std::cos(swing * tau) + damping / swing * std::sin(swing * tau));
}

double velocity(double tau, double damping) {
  const double swing = std::sqrt(1 - damping * damping);
  return std::exp(-damping * tau) * std::sin(swing * tau) / swing;
}

double restTau(double damping) { return -std::log(restShare) / damping; }

}  // namespace

Motion::Motion(QObject* parent) : QObject(parent) {
  connect(&Appearance::shared(), &Appearance::motionChanged, this, &Motion::reducedChanged);
}

bool Motion::reduced() { return Appearance::shared().reducesMotion(); }

double Motion::springPosition(double seconds, double response, double dampingFraction) {
  if (!(response > 0)) return 1;
  return position(std::max(seconds, 0.0) * 2 * std::numbers::pi / response, limitedDamping(dampingFraction));
}

int Motion::springMillis(double response, double dampingFraction) {
  if (!(response > 0)) return 0;
  return static_cast<int>(
      std::lround(restTau(limitedDamping(dampingFraction)) * response / (2 * std::numbers::pi) * 1000));
}

QVariantList Motion::springCurve(double dampingFraction) {
  const double damping = limitedDamping(dampingFraction);
  const double total = restTau(damping);
  const double step = total / pieces;
  QVariantList points;
  points.reserve(qsizetype{pieces} * 6);
  for (int i = 0; i < pieces; ++i) {
    const double from = i * step;
    const double to = from + step;
    const double end = i + 1 == pieces ? 1.0 : position(to, damping);
    points << (from + step / 3) / total << position(from, damping) + velocity(from, damping) * step / 3
           << (to - step / 3) / total << end - velocity(to, damping) * step / 3  //
           << (i + 1 == pieces ? 1.0 : to / total) << end;
  }
  return points;
}

QVariantList Motion::easeOutCurve() { return {0.0, 0.0, 0.58, 1.0, 1.0, 1.0}; }

}  // namespace quillmere
