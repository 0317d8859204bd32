// What the look leaves to the desktop: movement, contrast, the face.
#include "views/design/Appearance.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <cmath>

#include "views/design/Beat.h"
#include "views/design/Motion.h"
#include "views/design/Tokens.h"

namespace quillmere {
namespace {

class DesktopsAppearance : public testing::Test {
 protected:
  ~DesktopsAppearance() override {
    Appearance::shared().setReducesMotion(false);
    Appearance::shared().setWantsContrast(false);
    Appearance::shared().setFontFamily("Sans Serif");
  }
};

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Of an opaque colour, as accessibility counts it.
double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// How far a translucent colour stands out from the ground on which it lies.
double contrast(const QColor& colour, const QColor& ground) {
  const auto mixed = [&](double top, double low) { return low + (top - low) * colour.alphaF(); };
  const auto seen = QColor::fromRgbF(static_cast<float>(mixed(colour.redF(), ground.redF())),
                                     static_cast<float>(mixed(colour.greenF(), ground.greenF())),
                                     static_cast<float>(mixed(colour.blueF(), ground.blueF())));
  const auto [low, high] = std::minmax({luminance(seen), luminance(ground)});
  return (high + 0.05) / (low + 0.05);
}

TEST_F(DesktopsAppearance, MotionIsReducedWhereTheDesktopWantsItAndTellsSo) {
  const Motion motion;
  QSignalSpy told(&motion, &Motion::reducedChanged);
  EXPECT_FALSE(motion.reduced());
  Appearance::shared().setReducesMotion(true);
  Appearance::shared().setReducesMotion(true);
  EXPECT_TRUE(motion.reduced());
  EXPECT_EQ(told.count(), 1);
}

TEST_F(DesktopsAppearance, NothingBeatsWhereMotionIsReducedAndEverythingDoesAfterwards) {
  QQuickWindow window;
  window.resize(100, 100);
  Beat beat(window.contentItem());
  beat.setRunning(true);
  window.show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return beat.beating(); }));
  Appearance::shared().setReducesMotion(true);
  EXPECT_FALSE(beat.beating());
  EXPECT_EQ(beat.time(), 0) << "pulses stand still at one moment, the same for all";
  Beat later(window.contentItem());
  later.setRunning(true);
  EXPECT_FALSE(later.beating());
  EXPECT_EQ(later.time(), 0);
  EXPECT_FALSE(Metronome::shared().isRunning());
  Appearance::shared().setReducesMotion(false);
  EXPECT_TRUE(beat.beating());
  EXPECT_TRUE(later.beating());
}

TEST_F(DesktopsAppearance, TextsAndEdgesStandOutWhereContrastIsWanted) {
  const Tokens tokens;
  QSignalSpy told(&tokens, &Tokens::contrastChanged);
  Appearance::shared().setWantsContrast(true);
  EXPECT_EQ(told.count(), 1);
  const auto ground = tokens.property("canvasBG").value<QColor>();
  const auto floating = tokens.property("floatBG").value<QColor>();
  for (const char* name : {"textPrimary", "textSecondary", "textTertiary"}) {
    EXPECT_GE(contrast(tokens.property(name).value<QColor>(), ground), 7) << name;
    EXPECT_GE(contrast(tokens.property(name).value<QColor>(), floating), 7) << name;
  }
  for (const char* name : {"cardStroke", "cardStrokeHover", "cardStrokeSelected", "hairline", "windowStroke"}) {
    EXPECT_GE(contrast(tokens.property(name).value<QColor>(), ground), 3) << name;
  }
  EXPECT_GE(contrast(tokens.property("floatStroke").value<QColor>(), floating), 3);
  EXPECT_GE(contrast(tokens.property("focusRing").value<QColor>(), ground), 3);
  EXPECT_GE(contrast(Tokens().property("textTertiary").value<QColor>(), ground), 7) << "in a later window too";
  Appearance::shared().setWantsContrast(false);
  EXPECT_NEAR(tokens.property("textTertiary").value<QColor>().alphaF(), 0.35, 0.001);
}

TEST_F(DesktopsAppearance, WhatIsMutedStaysReadableWhereContrastIsWanted) {
  const Tokens tokens;
  const auto ground = tokens.property("canvasBG").value<QColor>();
  const auto muted = [&](const char* name) {
    return Tokens::alpha(tokens.property(name).value<QColor>(), tokens.mutedRow());
  };
  EXPECT_EQ(tokens.mutedRow(), 0.55);
  EXPECT_EQ(tokens.mutedSlider(), 0.45);
  Appearance::shared().setWantsContrast(true);
  EXPECT_GE(contrast(muted("textPrimary"), ground), 7);
  EXPECT_GE(contrast(muted("textTertiary"), ground), 7);
  // A muted row's slider: its thumb, and the track beside it.
  const double share = tokens.mutedRow() * tokens.mutedSlider();
  EXPECT_GE(contrast(Tokens::alpha(tokens.property("white").value<QColor>(), share), ground), 3);
  EXPECT_GE(contrast(tokens.sliderTrack(), ground), 3);
  Appearance::shared().setWantsContrast(false);
  EXPECT_EQ(tokens.mutedRow(), 0.55);
  EXPECT_EQ(tokens.mutedSlider(), 0.45);
}

TEST_F(DesktopsAppearance, TheDesktopsFaceComesFirstWhereItNamesOne) {
  Appearance::shared().setFontFamily("Cantarell");
  const Tokens tokens;
  EXPECT_EQ(tokens.property("bodyText").value<QFont>().families().first(), "Cantarell");
  EXPECT_EQ(tokens.property("heroDisplay").value<QFont>().families().first(), "Cantarell");
  EXPECT_EQ(tokens.property("bodyText").value<QFont>().pixelSize(), 13);
  EXPECT_NE(tokens.property("metric").value<QFont>().families().first(), "Cantarell") << "its digits must not dance";
}

TEST_F(DesktopsAppearance, ANameThatStandsForAnyFaceIsNone) {
  for (const char* name : {"Sans Serif", "sans", "Sans-Serif", ""}) {
    Appearance::shared().setFontFamily(name);
    EXPECT_EQ(Appearance::shared().fontFamily(), "") << name;
    EXPECT_EQ(Tokens::face(13).families().first(), "Inter") << name;
  }
}

TEST_F(DesktopsAppearance, TheFaceOfOursKeepsItsCutForTitles) {
  Appearance::shared().setFontFamily("Inter");
  EXPECT_EQ(Tokens::face(28).families().first(), "Inter Display");
}

}  // namespace
}  // namespace quillmere
