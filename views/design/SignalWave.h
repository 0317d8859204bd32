// The animated wave: its line at a moment, and its picture.
#pragma once

#include <QColor>
#include <QImage>
#include <vector>

namespace quillmere {

/// The line at a moment. Points are device-independent; y grows downwards.
class SignalWave {
 public:
  struct Point {
    double x;
    double y;
  };

  /// liveCount 0 is the straight line. seconds are those of the wall clock.
  SignalWave(int liveCount, double averageGain, double width, double height, double seconds);

  [[nodiscard]] bool isStill() const { return still_; }
  /// The whole part of width / 1.4, at least 80; one segment for the straight line.
  [[nodiscard]] int segmentCount() const { return segmentCount_; }
  [[nodiscard]] std::vector<Point> points() const;
  [[nodiscard]] double width() const { return width_; }
  /// y at a share 0 to 1 of the width.
  [[nodiscard]] double heightAt(double u) const;

  /// 0.55 to 1, from how much is sounding.
  [[nodiscard]] static double gainShare(int liveCount, double averageGain);
  /// 0.55 to 1, from the time.
  [[nodiscard]] static double breath(double seconds);

 private:
  double width_;
  double middle_;
  double heightScale_;
  double amplitude_;
  double phases_[3];
  int segmentCount_;
  bool still_;
};

/// How far the halo around a line reaches, in points.
[[nodiscard]] double waveReach(double lineWidth);

/// Draws the line with its two soft halos (or thin and plain, when it is still) on a clear picture of
/// pixels at scale device pixels a point, margin points larger on every side than the wave's canvas.
/// color may be translucent; lineWidth is in points.
[[nodiscard]] QImage drawWave(const SignalWave& wave, QSize pixels, double scale, double margin, const QColor& color,
                              double lineWidth);

}  // namespace quillmere
