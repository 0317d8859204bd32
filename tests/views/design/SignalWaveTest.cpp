// The wave's line and its picture.
#include "views/design/SignalWave.h"

#include <gtest/gtest.h>

#include <QQuickWindow>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "views/design/WaveItem.h"

namespace quillmere {
namespace {

constexpr double moment = 805000000.25;

TEST(SignalWave, WithNothingLiveIsOneStraightLineThroughTheMiddle) {
  const SignalWave wave(0, 0.8, 300, 90, moment);
  EXPECT_TRUE(wave.isStill());
  const auto points = wave.points();
  ASSERT_EQ(points.size(), 2u);
  EXPECT_EQ(points.front().x, 0);
  EXPECT_EQ(points.front().y, 45);
  EXPECT_EQ(points.back().x, 300);
  EXPECT_EQ(points.back().y, 45);
}

TEST(SignalWave, ANarrowCanvasStillHasEightySegments) {
  EXPECT_EQ(SignalWave(1, 1, 20, 90, moment).segmentCount(), 80);
  EXPECT_EQ(SignalWave(1, 1, 112, 90, moment).segmentCount(), 80);
}

TEST(SignalWave, AWideCanvasHasASegmentForEachOnePointFour) {
  EXPECT_EQ(SignalWave(1, 1, 300, 90, moment).segmentCount(), 214);
}

TEST(SignalWave, OneLiveApplicationAtGainNoughtStaysAtTheFloorAndKeepsMoving) {
  EXPECT_DOUBLE_EQ(SignalWave::gainShare(1, 0), 0.55);
  const SignalWave now(1, 0, 300, 90, moment);
  const SignalWave later(1, 0, 300, 90, moment + 0.5);
  EXPECT_FALSE(now.isStill());
  EXPECT_GT(std::abs(now.heightAt(0.4) - later.heightAt(0.4)), 0.5);
}

TEST(SignalWave, GainShareGrowsWithCountAndGainUpToOne) {
  EXPECT_DOUBLE_EQ(SignalWave::gainShare(2, 0.9), 2.0 / 3 * 0.9 * 1.4);
  EXPECT_DOUBLE_EQ(SignalWave::gainShare(3, 1), 1);
  EXPECT_DOUBLE_EQ(SignalWave::gainShare(40, 0.5), 0.7);
  EXPECT_DOUBLE_EQ(SignalWave::gainShare(1, std::nan("")), 0.55);
}

TEST(SignalWave, BreathStaysBetweenItsFloorAndOne) {
  for (int i = 0; i < 2000; ++i) {
    const double breath = SignalWave::breath(moment + i * 0.01);
    EXPECT_GE(breath, 0.55);
    EXPECT_LE(breath, 1.0);
  }
  EXPECT_NEAR(SignalWave::breath(0), (0.5 * 0.7 + (std::sin(1.3) * 0.5 + 0.5) * 0.3) * 0.45 + 0.55, 1e-12);
}

TEST(SignalWave, BothEndsArePinnedToTheMiddle) {
  const SignalWave wave(3, 1, 300, 90, moment);
  const auto points = wave.points();
  EXPECT_NEAR(points.front().y, 45, 1e-9);
  EXPECT_NEAR(points.back().y, 45, 1e-9);
}

TEST(SignalWave, FollowsTheSumOfThreeSines) {
  const double t = 12.5;
  const double u = 0.37;
  const double w = std::sin(t * 1.5 + u * 3) * 0.65 + std::sin(t * 2.4 + u * 7 + 0.7) * 0.25 +
                   std::sin(t * 3.8 + u * 13 + 1.4) * 0.1;
  const double expected =
      45 + 90 * 0.6 * std::sin(u * M_PI) * SignalWave::breath(t) * SignalWave::gainShare(2, 0.6) * w;
  EXPECT_NEAR(SignalWave(2, 0.6, 300, 90, t).heightAt(u), expected, 1e-9);
}

TEST(SignalWave, IsDrawnBrightestOnTheLineAndFadesOutward) {
  const SignalWave wave(3, 1, 120, 60, moment);
  const QImage image = drawWave(wave, QSize(240, 120), 2, 0, QColor(0, 0, 255), 2.6);
  const int column = 100;
  const int onLine = static_cast<int>(wave.heightAt((column + 0.5) / 240) * 2);
  EXPECT_GT(qAlpha(image.pixel(column, onLine)), 250);
  const int halo = qAlpha(image.pixel(column, onLine + 12));
  EXPECT_GT(halo, 20);
  EXPECT_LT(halo, 200);
}

TEST(SignalWave, TheStillLineHasNoHalo) {
  const SignalWave wave(0, 0, 120, 60, moment);
  const QImage image = drawWave(wave, QSize(120, 60), 1, 0, QColor(255, 255, 255, 45), 2);
  EXPECT_NEAR(qAlpha(image.pixel(60, 29)), 45, 2);
  EXPECT_NEAR(qAlpha(image.pixel(60, 30)), 45, 2);
  EXPECT_EQ(qAlpha(image.pixel(60, 26)), 0);
  EXPECT_EQ(qAlpha(image.pixel(60, 33)), 0);
}

TEST(SignalWave, TheGlowFadesOutBeyondTheEndsOfTheLine) {
  const SignalWave wave(3, 1, 120, 60, moment);
  const int margin = 22;
  const QImage image = drawWave(wave, QSize(120 + 2 * margin, 60 + 2 * margin), 1, margin, QColor(0, 0, 255), 2.6);
  const int middle = margin + 30;
  int last = 256;
  for (int x = margin; x >= 0; --x) {
    EXPECT_LE(qAlpha(image.pixel(x, middle)), last);
    last = qAlpha(image.pixel(x, middle));
  }
  EXPECT_LE(last, 2);
}

TEST(SignalWave, TheItemShowsTheWholePictureThoughItLeavesOutTheClearRows) {
  QQuickWindow window;
  window.setColor(Qt::black);
  window.resize(240, 120);
  WaveItem item;
  item.setLiveCount(3);
  item.setAverageGain(1);
  item.setColor(Qt::white);
  item.setLineWidth(2.6);
  const int margin = static_cast<int>(std::ceil(waveReach(2.6)));
  item.setPosition(QPointF(margin, margin));
  item.setSize(QSizeF(240 - 2 * margin, 120 - 2 * margin));
  item.setParentItem(window.contentItem());
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  // One moment after the other, so that what is left out differs.
  for (const double seconds : {moment, moment + 1.3, moment + 2.9, moment + 4.4}) {
    item.setTime(seconds);
    const QImage image = window.grabWindow();
    const SignalWave wave(3, 1, item.width(), item.height(), seconds);
    const QImage whole = drawWave(wave, image.size(), 1, margin, Qt::white, 2.6);
    int worst = 0;
    for (int y = 0; y < whole.height(); ++y) {
      for (int x = 0; x < whole.width(); ++x) {
        worst = std::max(worst, std::abs(qGray(image.pixel(x, y)) - qAlpha(whole.pixel(x, y))));
      }
    }
    EXPECT_LE(worst, 2) << seconds;
  }
  item.setParentItem(nullptr);
}

TEST(SignalWave, AnEmptyCanvasGivesAnEmptyPicture) {
  EXPECT_TRUE(drawWave(SignalWave(1, 1, 0, 0, moment), QSize(0, 0), 1, 0, Qt::white, 2).isNull());
}

}  // namespace
}  // namespace quillmere
