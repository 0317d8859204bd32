// Every symbol and mark that the views name is drawn.
#include "views/design/SymbolStore.h"

#include <gtest/gtest.h>

#include <QColor>

#include "views/design/Symbol.h"

namespace quillmere {
namespace {

int inkOf(const QImage& image) {
  int ink = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ink += qAlpha(image.pixel(x, y));
  }
  return ink / 255;
}

class NamedSymbol : public testing::TestWithParam<const char*> {};

TEST_P(NamedSymbol, IsDrawnWithinItsBox) {
  const QString path = SymbolStore::symbolPath(GetParam());
  const QSizeF grid = SymbolStore::gridSize(path);
  ASSERT_FALSE(grid.isEmpty());
  EXPECT_EQ(grid.height(), 24);
  const QSize pixels = (grid * 4).toSize();
  const QImage image = SymbolStore::draw(path, pixels, QColor(255, 255, 255));
  ASSERT_EQ(image.size(), pixels);
  EXPECT_GT(inkOf(image), 100);
  // Nothing touches the edge, so nothing is cut off.
  for (int x = 0; x < pixels.width(); ++x) {
    EXPECT_EQ(qAlpha(image.pixel(x, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(x, pixels.height() - 1)), 0);
  }
  for (int y = 0; y < pixels.height(); ++y) {
    EXPECT_EQ(qAlpha(image.pixel(0, y)), 0);
    EXPECT_EQ(qAlpha(image.pixel(pixels.width() - 1, y)), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Symbols, NamedSymbol,
    testing::Values("airpods", "airpods.max", "app.fill", "arrow.down.circle", "arrow.down.circle.fill", "arrow.right",
                    "arrow.up.right", "arrow.up.right.square", "backward.fill", "bolt.fill", "checkmark",
                    "checkmark.circle.fill", "chevron.down", "chevron.right", "chevron.up.chevron.down", "command",
                    "display", "dot.radiowaves.right", "forward.end.fill", "forward.fill", "gear", "gearshape",
                    "headphones", "headphones.circle.fill", "hifispeaker.2.fill", "lock.shield.fill", "magnifyingglass",
                    "minus.circle", "moon.fill", "moon.zzz", "mouth", "music.note", "pause.fill", "play.fill", "plus",
                    "plus.circle.fill", "power", "rectangle.connected.to.line.below", "rectangle.stack",
                    "rectangle.stack.fill", "slider.horizontal.3", "speaker.slash", "speaker.slash.fill",
                    "speaker.wave.2", "timer", "trash", "tv", "waveform", "waveform.badge.minus", "waveform.path",
                    "xmark"));

class NamedMark : public testing::TestWithParam<const char*> {};

TEST_P(NamedMark, IsDrawn) {
  const QString path = SymbolStore::markPath(GetParam());
  const QSizeF grid = SymbolStore::gridSize(path);
  ASSERT_FALSE(grid.isEmpty());
  EXPECT_GT(inkOf(SymbolStore::draw(path, grid.scaled(256, 256, Qt::KeepAspectRatio).toSize(), QColor(255, 255, 255))),
            200);
}

INSTANTIATE_TEST_SUITE_P(Marks, NamedMark, testing::Values("wordmark", "shush", "statusbaricon"));

TEST(SymbolStore, ListsTheSymbolsByName) {
  const QStringList names = SymbolStore::symbolNames();
  EXPECT_TRUE(names.contains("arrow.up.right.square"));
  EXPECT_FALSE(names.contains("wordmark"));
}

TEST(SymbolStore, AnUnknownSymbolIsNothing) {
  EXPECT_TRUE(SymbolStore::draw(SymbolStore::symbolPath("no.such.symbol"), QSize(20, 20), QColor(1, 2, 3)).isNull());
  EXPECT_TRUE(SymbolStore::gridSize(SymbolStore::symbolPath("no.such.symbol")).isEmpty());
}

TEST(SymbolStore, TintsWithTheColourAndItsOpacity) {
  const QImage image = SymbolStore::draw(SymbolStore::symbolPath("app.fill"), QSize(48, 48), QColor(255, 0, 0, 128));
  EXPECT_EQ(qAlpha(image.pixel(24, 24)), 128);
  EXPECT_EQ(image.pixelColor(24, 24).red(), 255);
}

TEST(SymbolStore, WhatIsWhiteInADrawingIsCutOut) {
  const QImage image =
      SymbolStore::draw(SymbolStore::symbolPath("plus.circle.fill"), QSize(96, 96), QColor(255, 255, 255));
  EXPECT_EQ(qAlpha(image.pixel(48, 48)), 0);
  EXPECT_EQ(qAlpha(image.pixel(30, 30)), 255);
}

TEST(SymbolStore, AHeavierWeightHasMoreInk) {
  const QString path = SymbolStore::symbolPath("chevron.right");
  const QColor white(255, 255, 255);
  const QSize pixels = (SymbolStore::gridSize(path) * 4).toSize();
  const int light = inkOf(SymbolStore::draw(path, pixels, white, 300));
  const int regular = inkOf(SymbolStore::draw(path, pixels, white, 400));
  const int semibold = inkOf(SymbolStore::draw(path, pixels, white, 600));
  EXPECT_LT(light, regular);
  EXPECT_LT(regular, semibold);
}

TEST(Symbol, BoxesAreEvenSoThatTheyCentreOnWholePixels) {
  for (int size = 7; size <= 40; ++size) EXPECT_EQ(Symbol::extentFor(size) % 2, 0);
  EXPECT_EQ(Symbol::extentFor(10), 14);
  EXPECT_EQ(Symbol::extentFor(12), 18);
}

/// A system whose only symbol is a full square.
class SystemWithOneSymbol : public testing::Test {
 protected:
  SystemWithOneSymbol() {
    SymbolStore::useSystemSymbols([this](const QString& name, QSize pixels, int weight) {
      asked.append(name + QLatin1Char('@') + QString::number(weight));
      if (name != QLatin1StringView("timer")) return QImage();
      QImage full(pixels, QImage::Format_ARGB32);
      full.fill(Qt::white);
      return full;
    });
  }
  ~SystemWithOneSymbol() override { SymbolStore::useSystemSymbols({}); }

  QStringList asked;
};

TEST_F(SystemWithOneSymbol, LendsItInTheInkThatIsAskedFor) {
  // At a size that nobody else draws, since what was drawn is kept.
  const auto image = SymbolStore::draw(SymbolStore::symbolPath("timer"), {37, 37}, QColor(255, 0, 0), 600);
  EXPECT_EQ(image.size(), QSize(37, 37));
  EXPECT_EQ(image.pixelColor(0, 0), QColor(255, 0, 0));
  EXPECT_EQ(asked, QStringList("timer@600"));
}

TEST_F(SystemWithOneSymbol, LeavesTheOthersAsTheyAreDrawnHere) {
  const auto image = SymbolStore::draw(SymbolStore::symbolPath("trash"), {41, 41}, QColor(255, 0, 0));
  EXPECT_EQ(image.size(), QSize(41, 41));
  EXPECT_GT(inkOf(image), 50);
  EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

TEST_F(SystemWithOneSymbol, IsNotAskedForMarks) {
  EXPECT_FALSE(SymbolStore::draw(SymbolStore::markPath("shush"), {43, 43}, QColor(255, 0, 0)).isNull());
  EXPECT_TRUE(asked.isEmpty());
}

}  // namespace
}  // namespace quillmere
