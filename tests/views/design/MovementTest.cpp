// What moves by itself: phases, the one timer, the heartbeat of items, springs.
#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTest>
#include <QVariant>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "runtime/Clocks.h"
#include "views/design/Beat.h"
#include "views/design/Metronome.h"
#include "views/design/Motion.h"
#include "views/design/Rhythm.h"

namespace quillmere {
namespace {

class FixedClocks final : public Clocks {
 public:
  [[nodiscard]] Date now() const override { return Date{77.5}; }
  [[nodiscard]] MonotonicTime monotonicNow() const override { return {}; }
  void sleepThread(Duration) override {}
};

class Ear final : public Metronome::Listener {
 public:
  void beat(double seconds) override { heard.push_back(seconds); }
  std::vector<double> heard;
};

TEST(Rhythm, TheShimmerBreathesInAboutTwoSeconds) {
  EXPECT_DOUBLE_EQ(rhythm::shimmerPhase(0), 0.5);
  EXPECT_NEAR(rhythm::shimmerPhase(std::numbers::pi / 6), 1, 1e-12);
  EXPECT_NEAR(rhythm::shimmerPhase(10), rhythm::shimmerPhase(10 + 2 * std::numbers::pi / 3), 1e-9);
}

TEST(Rhythm, TheShimmersOpacityLiesBetweenFifteenAndThirtyThreeHundredths) {
  EXPECT_DOUBLE_EQ(rhythm::shimmerOpacity(0), 0.15);
  EXPECT_DOUBLE_EQ(rhythm::shimmerOpacity(1), 0.33);
}

TEST(Rhythm, ThePulseScalesItsHalo) {
  EXPECT_NEAR(rhythm::livePulse(std::numbers::pi / 8), 1, 1e-12);
  EXPECT_DOUBLE_EQ(rhythm::haloScale(0), 0.85);
  EXPECT_DOUBLE_EQ(rhythm::haloScale(1), 1.25);
}

TEST(Metronome, RunsNoTimerWhileNobodyListens) {
  const FixedClocks clocks;
  Metronome metronome(clocks);
  EXPECT_FALSE(metronome.isRunning());
  Ear ear;
  metronome.join(&ear, Metronome::Rate::Thirty);
  EXPECT_TRUE(metronome.isRunning());
  metronome.leave(&ear);
  EXPECT_FALSE(metronome.isRunning());
}

TEST(Metronome, NeverBeatsMoreThanThirtyOrSixtyTimesASecond) {
  const FixedClocks clocks;
  Metronome metronome(clocks);
  Ear slow;
  Ear fast;
  metronome.join(&slow, Metronome::Rate::Thirty);
  EXPECT_GE(metronome.intervalMillis() * 30, 1000);
  metronome.join(&fast, Metronome::Rate::Sixty);
  EXPECT_GE(metronome.intervalMillis() * 60, 1000);
  EXPECT_LT(metronome.intervalMillis() * 30, 1000);
  metronome.leave(&fast);
  EXPECT_GE(metronome.intervalMillis() * 30, 1000);
  metronome.leave(&slow);
}

TEST(Metronome, TellsTheWallClocksSeconds) {
  const FixedClocks clocks;
  Metronome metronome(clocks);
  Ear ear;
  metronome.join(&ear, Metronome::Rate::Sixty);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !ear.heard.empty(); }, 5000));
  EXPECT_EQ(ear.heard.front(), 77.5);
  metronome.leave(&ear);
}

TEST(Metronome, TheSlowHearEverySecondBeatOfTheFast) {
  const FixedClocks clocks;
  Metronome metronome(clocks);
  Ear slow;
  Ear fast;
  metronome.join(&slow, Metronome::Rate::Thirty);
  metronome.join(&fast, Metronome::Rate::Sixty);
  ASSERT_TRUE(QTest::qWaitFor([&] { return fast.heard.size() >= 10; }, 5000));
  EXPECT_EQ(slow.heard.size(), fast.heard.size() / 2);
  metronome.leave(&slow);
  metronome.leave(&fast);
}

TEST(Metronome, JoiningTwiceTakesOneSeat) {
  const FixedClocks clocks;
  Metronome metronome(clocks);
  Ear ear;
  metronome.join(&ear, Metronome::Rate::Thirty);
  metronome.join(&ear, Metronome::Rate::Sixty);
  EXPECT_EQ(metronome.listenerCount(), 1);
  metronome.leave(&ear);
}

class BeatInAWindow : public testing::Test {
 protected:
  BeatInAWindow() {
    window_.resize(100, 100);
    holder_.setParentItem(window_.contentItem());
    holder_.setSize({50, 50});
    beat_ = std::make_unique<Beat>(&holder_);
  }
  [[nodiscard]] bool comesTo(bool beating) {
    return QTest::qWaitFor([&] { return beat_->beating() == beating; }, 5000);
  }

  QQuickWindow window_;
  QQuickItem holder_;
  std::unique_ptr<Beat> beat_;
};

TEST_F(BeatInAWindow, BeatsOnlyWhileItsWindowIsShown) {
  beat_->setRunning(true);
  EXPECT_FALSE(beat_->beating());
  window_.show();
  EXPECT_TRUE(comesTo(true));
  window_.hide();
  EXPECT_TRUE(comesTo(false));
  EXPECT_FALSE(Metronome::shared().isRunning());
}

TEST_F(BeatInAWindow, StopsWhileAnAncestorIsInvisible) {
  beat_->setRunning(true);
  window_.show();
  ASSERT_TRUE(comesTo(true));
  holder_.setVisible(false);
  EXPECT_FALSE(beat_->beating());
  holder_.setVisible(true);
  EXPECT_TRUE(beat_->beating());
}

TEST_F(BeatInAWindow, DoesNotBeatUnlessItIsToldToRun) {
  window_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
  EXPECT_FALSE(beat_->beating());
  beat_->setRunning(true);
  EXPECT_TRUE(beat_->beating());
  beat_->setRunning(false);
  EXPECT_FALSE(beat_->beating());
}

TEST_F(BeatInAWindow, TenOfThemShareOneTimer) {
  std::vector<std::unique_ptr<Beat>> more;
  beat_->setRunning(true);
  for (int i = 0; i < 9; ++i) {
    more.push_back(std::make_unique<Beat>(&holder_));
    more.back()->setRunning(true);
  }
  window_.show();
  ASSERT_TRUE(comesTo(true));
  ASSERT_TRUE(QTest::qWaitFor([] { return Metronome::shared().listenerCount() == 10; }, 5000));
  EXPECT_TRUE(Metronome::shared().isRunning());
  more.clear();
  EXPECT_EQ(Metronome::shared().listenerCount(), 1);
  beat_.reset();
  EXPECT_FALSE(Metronome::shared().isRunning());
}

TEST_F(BeatInAWindow, TakesHalfTheFramesWhereTheProcessorDraws) {
  beat_->setRate(Beat::Sixty);
  beat_->setRunning(true);
  window_.show();
  ASSERT_TRUE(comesTo(true));
  const bool isSoftware = window_.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
  EXPECT_EQ(Metronome::shared().intervalMillis(), isSoftware ? 34 : 17);
}

TEST_F(BeatInAWindow, OutOfTheWindowItsTimeStandsStill) {
  beat_->setRunning(true);
  window_.show();
  ASSERT_TRUE(comesTo(true));
  Beat witness(window_.contentItem());
  witness.setRunning(true);
  holder_.setY(500);
  const double before = beat_->time();
  const double started = witness.time();
  ASSERT_TRUE(QTest::qWaitFor([&] { return witness.time() > started; }, 5000));
  EXPECT_EQ(beat_->time(), before);
}

TEST(Motion, ASpringStartsAtRestAndComesToRestAtOne) {
  EXPECT_NEAR(Motion::springPosition(0, 0.6, 0.85), 0, 1e-12);
  EXPECT_NEAR(Motion::springPosition(Motion::springMillis(0.6, 0.85) / 1000.0, 0.6, 0.85), 1, 0.002);
}

TEST(Motion, ALessDampedSpringSwingsFurtherBeyondItsRest) {
  double highest = 0;
  double highestOfSofter = 0;
  for (int i = 0; i < 1000; ++i) {
    highest = std::max(highest, Motion::springPosition(i * 0.001, 0.5, 0.85));
    highestOfSofter = std::max(highestOfSofter, Motion::springPosition(i * 0.001, 0.5, 0.5));
  }
  EXPECT_GT(highest, 1);
  EXPECT_LT(highest, 1.01);
  EXPECT_GT(highestOfSofter, 1.1);
}

TEST(Motion, TheCurvesPiecesMeetTheSpring) {
  const QVariantList points = Motion::springCurve(0.85);
  ASSERT_EQ(points.size() % 6, 0);
  const double seconds = Motion::springMillis(0.6, 0.85) / 1000.0;
  for (qsizetype i = 4; i + 2 < points.size(); i += 6) {
    EXPECT_NEAR(points[i + 1].toDouble(), Motion::springPosition(points[i].toDouble() * seconds, 0.6, 0.85), 0.005);
  }
  EXPECT_EQ(points[points.size() - 2].toDouble(), 1);
  EXPECT_EQ(points.last().toDouble(), 1);
}

TEST(Motion, TheCurveHasNoMorePiecesThanQtHasRoomFor) { EXPECT_LE(Motion::springCurve(0.5).size() / 6, 10); }

TEST(Motion, ASpringWithoutResponseIsThereAtOnce) {
  EXPECT_EQ(Motion::springMillis(0, 0.85), 0);
  EXPECT_EQ(Motion::springPosition(0, 0, 0.85), 1);
}

}  // namespace
}  // namespace quillmere
