// The numbers of the look, one by one.
#include "views/design/Tokens.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>
#include <QVariant>

namespace quillmere {
namespace {

// A colour keeps 16 bits a channel; anything nearer than that is the same colour.
constexpr float near = 1.0f / 4096;

void expectColour(const QColor& colour, float red, float green, float blue, float alpha) {
  EXPECT_NEAR(colour.redF(), red, near);
  EXPECT_NEAR(colour.greenF(), green, near);
  EXPECT_NEAR(colour.blueF(), blue, near);
  EXPECT_NEAR(colour.alphaF(), alpha, near);
}

void expectFont(const QFont& font, int size, QFont::Weight weight) {
  EXPECT_EQ(font.pixelSize(), size);
  EXPECT_EQ(font.weight(), weight);
}

QColor colourOf(const char* name) {
  const Tokens tokens;
  return tokens.property(name).value<QColor>();
}

QFont fontOf(const char* name) {
  const Tokens tokens;
  return tokens.property(name).value<QFont>();
}

TEST(Tokens, SpacingGoesFromFourToThirtyTwo) {
  EXPECT_EQ(SpacingTokens::xs(), 4);
  EXPECT_EQ(SpacingTokens::s(), 8);
  EXPECT_EQ(SpacingTokens::m(), 12);
  EXPECT_EQ(SpacingTokens::l(), 16);
  EXPECT_EQ(SpacingTokens::xl(), 24);
  EXPECT_EQ(SpacingTokens::xxl(), 32);
}

TEST(Tokens, CornersAreSixTenAndFourteen) {
  EXPECT_EQ(CornerTokens::chip(), 6);
  EXPECT_EQ(CornerTokens::card(), 10);
  EXPECT_EQ(CornerTokens::tile(), 14);
}

TEST(Tokens, ElevationsAreBlackAndGrow) {
  const ShadowStyle resting = ElevationTokens::resting();
  expectColour(resting.color, 0, 0, 0, 0.18f);
  EXPECT_EQ(resting.radius, 10);
  EXPECT_EQ(resting.offsetDown, 4);
  const ShadowStyle hover = ElevationTokens::hover();
  expectColour(hover.color, 0, 0, 0, 0.28f);
  EXPECT_EQ(hover.radius, 18);
  EXPECT_EQ(hover.offsetDown, 8);
  const ShadowStyle hero = ElevationTokens::hero();
  expectColour(hero.color, 0, 0, 0, 0.32f);
  EXPECT_EQ(hero.radius, 28);
  EXPECT_EQ(hero.offsetDown, 12);
}

TEST(Tokens, BrandColoursAreOpaque) {
  expectColour(colourOf("brandSage"), 0.145f, 0.388f, 0.922f, 1);
  expectColour(colourOf("brandMint"), 0.231f, 0.51f, 0.965f, 1);
  expectColour(colourOf("brandCoral"), 0.133f, 0.773f, 0.369f, 1);
  expectColour(colourOf("brandRed"), 0.882f, 0.114f, 0.282f, 1);
  expectColour(colourOf("brandAmber"), 0.98f, 0.8f, 0.082f, 1);
  expectColour(colourOf("canvasBG"), 0.051f, 0.059f, 0.071f, 1);
}

TEST(Tokens, CardsAreWhiteOrSageAtLowOpacity) {
  expectColour(colourOf("cardBG"), 1, 1, 1, 0.025f);
  expectColour(colourOf("cardBGHover"), 1, 1, 1, 0.04f);
  expectColour(colourOf("cardBGSelected"), 0.145f, 0.388f, 0.922f, 0.1f);
  expectColour(colourOf("cardStroke"), 1, 1, 1, 0.06f);
  expectColour(colourOf("cardStrokeHover"), 1, 1, 1, 0.1f);
  expectColour(colourOf("cardStrokeSelected"), 0.145f, 0.388f, 0.922f, 0.4f);
  expectColour(colourOf("hairline"), 1, 1, 1, 0.05f);
}

TEST(Tokens, TextsAreWhiteInThreeOpacities) {
  expectColour(colourOf("textPrimary"), 1, 1, 1, 0.85f);
  expectColour(colourOf("textSecondary"), 1, 1, 1, 0.55f);
  expectColour(colourOf("textTertiary"), 1, 1, 1, 0.35f);
}

TEST(Tokens, TracksAreATenthOfThePrimaryColour) { expectColour(colourOf("sliderTrack"), 1, 1, 1, 0.085f); }

TEST(Tokens, TextWhoseWordsHaveRoomBreaksWithinNone) {
  const auto font = Tokens::face(10);
  EXPECT_FALSE(Tokens::breaksWithinWord("White Noise", font, 56));
  EXPECT_FALSE(Tokens::breaksWithinWord("Zoom", font, 56));
  EXPECT_TRUE(Tokens::breaksWithinWord("Interoperability", font, 56));
  EXPECT_TRUE(Tokens::breaksWithinWord("An Interoperability", font, 56));
  EXPECT_FALSE(Tokens::breaksWithinWord("Interoperability", font, 0)) << "not laid out yet";
}

TEST(Tokens, FontsHaveTheirSizesAndWeights) {
  expectFont(fontOf("heroDisplay"), 36, QFont::DemiBold);
  expectFont(fontOf("displayXL"), 28, QFont::DemiBold);
  expectFont(fontOf("displayL"), 22, QFont::DemiBold);
  expectFont(fontOf("displayM"), 17, QFont::DemiBold);
  expectFont(fontOf("cardTitle"), 14, QFont::DemiBold);
  expectFont(fontOf("bodyText"), 13, QFont::Normal);
  expectFont(fontOf("bodyEmphasis"), 13, QFont::Medium);
  expectFont(fontOf("caption1"), 11, QFont::Normal);
  expectFont(fontOf("captionStrong"), 11, QFont::DemiBold);
  expectFont(fontOf("sectionCaps"), 10, QFont::DemiBold);
  expectFont(fontOf("metric"), 12, QFont::Medium);
  expectFont(fontOf("metricLarge"), 22, QFont::DemiBold);
}

TEST(Tokens, MetricIsTheOnlyMonospacedFont) {
  EXPECT_EQ(fontOf("metric").styleHint(), QFont::Monospace);
  EXPECT_EQ(fontOf("bodyText").styleHint(), QFont::SansSerif);
  EXPECT_EQ(fontOf("metricLarge").styleHint(), QFont::SansSerif);
}

TEST(Tokens, EveryFontNamesAFallbackThatIsEverywhere) {
  for (const char* name : {"heroDisplay", "bodyText", "metric", "metricLarge"}) {
    EXPECT_TRUE(fontOf(name).families().last().startsWith("DejaVu Sans")) << name;
  }
}

TEST(Tokens, AlphaMultipliesTheOpacityThatIsThere) {
  expectColour(Tokens::alpha(colourOf("textSecondary"), 0.5), 1, 1, 1, 0.275f);
}

TEST(Tokens, LightAddedToTheGroundNeverExceedsWhite) {
  expectColour(Tokens::lightened(Qt::white, Qt::white, 0.5), 1, 1, 1, 1);
  expectColour(Tokens::lightened(colourOf("canvasBG"), colourOf("brandSage"), 0.07), 0.06115f, 0.08616f, 0.13554f, 1);
}

TEST(Tokens, EvenlySetDigitsTakeTheRoomOfAllOfThem) {
  const QFont font = fontOf("metricLarge");
  EXPECT_NEAR(Tokens::digitWidth(font) * 10, QFontMetricsF(font).horizontalAdvance(QStringLiteral("0123456789")), 0.01);
}

TEST(Tokens, MonospacedDigitsAreEven) { EXPECT_TRUE(Tokens::hasEvenDigits(fontOf("metric"))); }

TEST(Tokens, BalancedWidthLeavesNoWordAloneAndAddsNoLine) {
  const QFont font = fontOf("bodyText");
  const QFontMetricsF metrics(font);
  const QString text = QStringLiteral("words of the same size words of the same size orphan");
  const double whole = metrics.horizontalAdvance(text);
  const double width = metrics.horizontalAdvance(QStringLiteral("words of the same size words of the same size ")) + 1;
  const double balanced = Tokens::balancedWidth(text, font, width);
  EXPECT_LT(balanced, width * 0.75);
  EXPECT_GE(balanced, whole / 2);
}

TEST(Tokens, BalancedWidthOfASingleLineIsAllThereIs) {
  EXPECT_EQ(Tokens::balancedWidth(QStringLiteral("word"), fontOf("bodyText"), 500), 500);
  EXPECT_EQ(Tokens::balancedWidth(QString(), fontOf("bodyText"), 500), 500);
}

struct Broken {
  int lines = 0;
  bool withinWord = false;
};

Broken brokenAt(const QString& text, const QFont& font, double width) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  Broken broken;
  layout.beginLayout();
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    const auto start = line.textStart();
    broken.withinWord |= start > 0 && !text.at(start - 1).isSpace();
    ++broken.lines;
  }
  layout.endLayout();
  return broken;
}

TEST(Tokens, BalancedWidthAddsNoLineWhateverTheText) {
  const QStringList texts{
      QStringLiteral("Music ducks when a call opens the microphone, and comes back when the call is over."),
      QStringLiteral("a long-winded, well-known, never-ending, often-told story of up-and-coming people"),
      QStringLiteral("Donaudampfschifffahrtsgesellschaftskapitän is one word and these are some others beside it"),
      QStringLiteral("first line%1second line, which is a good deal longer than the first").arg(QChar::LineSeparator),
      QStringLiteral("كل تطبيق له مستوى صوت خاص به ويمكن كتمه أو نقله إلى جهاز آخر في أي وقت"),
      QStringLiteral("每个应用程序都有自己的音量、静音和输出设备，通话时音乐会自动变小"),
      QStringLiteral("two   spaces   between   the   words   of   this   text,   here   and   there")};
  for (const auto& text : texts) {
    for (const char* face : {"bodyText", "caption1", "displayL"}) {
      const QFont font = fontOf(face);
      for (const double width : {90.0, 173.0, 240.5, 400.0, 2000.0}) {
        const double balanced = Tokens::balancedWidth(text, font, width);
        EXPECT_LE(balanced, width) << text.toStdString() << ' ' << face;
        const auto wide = brokenAt(text, font, width);
        const auto narrow = brokenAt(text, font, balanced);
        EXPECT_EQ(narrow.lines, wide.lines) << text.toStdString() << ' ' << face << ' ' << width << ' ' << balanced;
        EXPECT_LE(narrow.withinWord, wide.withinWord) << text.toStdString() << ' ' << face << ' ' << width;
      }
    }
  }
}

TEST(Tokens, CapitalsKeepTheTextsOwnLetters) {
  const QFont font = Tokens::capitals(fontOf("sectionCaps"), 0.8);
  EXPECT_EQ(font.capitalization(), QFont::AllUppercase);
  EXPECT_NEAR(font.letterSpacing(), 0.8, 0.01);
}

}  // namespace
}  // namespace quillmere
