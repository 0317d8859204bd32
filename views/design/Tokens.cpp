// Builds the tokens once; afterwards they are only read.
#include "views/design/Tokens.h"

#include <QFontMetricsF>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <vector>

#include "views/design/Appearance.h"

namespace quillmere {
namespace {

// From this size on a face with an optical size of its own for titles reads better.
constexpr double displaySize = 20;

const QString digits = QStringLiteral("0123456789");

QStringList families(design::FaceDesign design, double size) {
  switch (design) {
    case design::FaceDesign::Monospaced:
      return {"SF Mono", "JetBrains Mono", "Cascadia Mono", "IBM Plex Mono", "Noto Sans Mono", "DejaVu Sans Mono"};
    case design::FaceDesign::Rounded:
      return {"SF Pro Rounded", "Nunito", "Quicksand", "Inter Display", "Inter", "Noto Sans", "DejaVu Sans"};
    case design::FaceDesign::Standard:
      break;
  }
  QStringList names{"Inter", "SF Pro Text", "Noto Sans", "Cantarell", "DejaVu Sans"};
  if (size >= displaySize) names.prepend("Inter Display");
  // The system face comes first, where the desktop names one; ours has its cut for titles.
  const auto& own = Appearance::shared().fontFamily();
  if (!own.isEmpty() && !own.startsWith("Inter")) names.prepend(own);
  return names;
}

QFont makeFont(double size, int weight, design::FaceDesign design) {
  QFont font;
  font.setFamilies(families(design, size));
  font.setStyleHint(design == design::FaceDesign::Monospaced ? QFont::Monospace : QFont::SansSerif);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
  font.setWeight(static_cast<QFont::Weight>(weight));
  return font;
}

struct Breaks {
  int lines = 0;
  bool withinWord = false;
};

/// As a text item breaks the text: exact, and dear, since each call shapes the whole text.
Breaks breakUp(const QString& text, const QFont& font, double width) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  Breaks breaks;
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    const auto start = line.textStart();
    breaks.withinWord = breaks.withinWord || (start > 0 && !text.at(start - 1).isSpace());
    ++breaks.lines;
  }
  layout.endLayout();
  return breaks;
}

/// What a line can't be broken within, and the room that it takes.
struct Piece {
  double width = 0;
  /// With the spaces behind it, which stand only between two pieces of a line.
  double advance = 0;
  bool endsWord = false;
};

std::vector<Piece> piecesOf(const QString& text, const QFont& font) {
  const QFontMetricsF metrics(font);
  QTextBoundaryFinder finder(QTextBoundaryFinder::Line, text);
  std::vector<Piece> pieces;
  qsizetype start = 0;
  for (auto end = finder.toNextBoundary(); end > start; end = finder.toNextBoundary()) {
    auto visible = end;
    while (visible > start && text.at(visible - 1).isSpace()) --visible;
    const double advance = metrics.horizontalAdvance(text.sliced(start, end - start));
    const double width = visible == end ? advance : metrics.horizontalAdvance(text.sliced(start, visible - start));
    pieces.push_back({width, advance, visible < end});
    start = end;
  }
  return pieces;
}

/// The same from the pieces alone. A piece that is wider than the line counts as a break within a word.
Breaks breakUp(const std::vector<Piece>& pieces, double width) {
  Breaks breaks{.lines = 1};
  double used = 0;
  bool wordEnded = true;
  for (const auto& piece : pieces) {
    if (used > 0 && used + piece.width > width) {
      ++breaks.lines;
      breaks.withinWord = breaks.withinWord || !wordEnded;
      used = 0;
    }
    breaks.withinWord = breaks.withinWord || piece.width > width;
    used += piece.advance;
    wordEnded = piece.endsWord;
  }
  return breaks;
}

/// The least width at which `breaks` makes no more lines than at `width`, and breaks no word if that can be had.
template <typename BreakUp>
double leastWidth(const BreakUp& breaks, double width, int lines) {
  double tooNarrow = 0;
  double enough = width;
  while (enough - tooNarrow > 1) {
    const double middle = (tooNarrow + enough) / 2;
    (breaks(middle).lines > lines ? tooNarrow : enough) = middle;
  }
  // A hyphen at the end of a line is worse than lines of unequal length.
  const double least = std::ceil(enough);
  for (double whole = least; whole < width; ++whole) {
    if (!breaks(whole).withinWord) return whole;
  }
  return least;
}

}  // namespace

QColor toColor(const design::Rgba& colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue), static_cast<float>(colour.opacity));
}

QFont toFont(const design::Face& face) { return makeFont(face.size, face.weight, face.design); }

ShadowStyle::ShadowStyle(const design::Shadow& shadow)
    : color(toColor(design::colour::black.at(shadow.opacity))), radius(shadow.radius), offsetDown(shadow.offsetDown) {}

Tokens::Tokens(QObject* parent)
    : QObject(parent),
      brandSage_(toColor(design::colour::brandSage)),
      brandMint_(toColor(design::colour::brandMint)),
      brandCoral_(toColor(design::colour::brandCoral)),
      brandRed_(toColor(design::colour::brandRed)),
      brandAmber_(toColor(design::colour::brandAmber)),
      canvasBG_(toColor(design::colour::canvasBG)),
      cardBG_(toColor(design::colour::cardBG)),
      cardBGHover_(toColor(design::colour::cardBGHover)),
      cardBGSelected_(toColor(design::colour::cardBGSelected)),
      white_(toColor(design::colour::white)),
      black_(toColor(design::colour::black)),
      clear_(toColor(design::colour::white.at(0))),
      systemAccent_(toColor(design::colour::systemAccent)),
      systemGrey_(toColor(design::colour::systemGrey)),
      systemGreen_(toColor(design::colour::systemGreen)),
      floatBG_(toColor(design::colour::floatBG)),
      thinMaterial_(toColor(design::colour::thinMaterial)),
      thickMaterial_(toColor(design::colour::thickMaterial)),
      heroDisplay_(toFont(design::face::heroDisplay)),
      displayXL_(toFont(design::face::displayXL)),
      displayL_(toFont(design::face::displayL)),
      displayM_(toFont(design::face::displayM)),
      cardTitle_(toFont(design::face::cardTitle)),
      bodyText_(toFont(design::face::bodyText)),
      bodyEmphasis_(toFont(design::face::bodyEmphasis)),
      caption1_(toFont(design::face::caption1)),
      captionStrong_(toFont(design::face::captionStrong)),
      sectionCaps_(toFont(design::face::sectionCaps)),
      metric_(toFont(design::face::metric)),
      metricLarge_(toFont(design::face::metricLarge)) {
  readContrast();
  connect(&Appearance::shared(), &Appearance::contrastChanged, this, [this] {
    readContrast();
    Q_EMIT contrastChanged();
  });
}

void Tokens::readContrast() {
  const bool isHigh = Appearance::shared().wantsContrast();
  const auto pick = [isHigh](const design::Rgba& usual, const design::Rgba& high) {
    return toColor(isHigh ? high : usual);
  };
  cardStroke_ = pick(design::colour::cardStroke, design::contrast::cardStroke);
  cardStrokeHover_ = pick(design::colour::cardStrokeHover, design::contrast::cardStrokeHover);
  cardStrokeSelected_ = pick(design::colour::cardStrokeSelected, design::contrast::cardStrokeSelected);
  hairline_ = pick(design::colour::hairline, design::contrast::hairline);
  textPrimary_ = pick(design::colour::textPrimary, design::contrast::textPrimary);
  textSecondary_ = pick(design::colour::textSecondary, design::contrast::textSecondary);
  textTertiary_ = pick(design::colour::textTertiary, design::contrast::textTertiary);
  sliderTrack_ = pick(design::colour::sliderTrack, design::contrast::sliderTrack);
  mutedRow_ = isHigh ? design::contrast::mutedRow : design::opacity::mutedRow;
  mutedSlider_ = isHigh ? design::contrast::mutedSlider : design::opacity::mutedSlider;
  floatStroke_ = pick(design::colour::floatStroke, design::contrast::floatStroke);
  windowStroke_ = pick(design::colour::windowStroke, design::contrast::windowStroke);
  focusRing_ = pick(design::colour::focusRing, design::contrast::focusRing);
}

QColor Tokens::alpha(const QColor& color, double share) {
  QColor result = color;
  result.setAlphaF(static_cast<float>(std::clamp(static_cast<double>(color.alphaF()) * share, 0.0, 1.0)));
  return result;
}

QColor Tokens::lightened(const QColor& ground, const QColor& top, double share) {
  const auto add = [share](float low, float high) {
    return std::clamp(low + high * static_cast<float>(share), 0.0f, 1.0f);
  };
  return QColor::fromRgbF(add(ground.redF(), top.redF()), add(ground.greenF(), top.greenF()),
                          add(ground.blueF(), top.blueF()));
}

QFont Tokens::face(double size, int weight) { return makeFont(size, weight, design::FaceDesign::Standard); }

QFont Tokens::monospaced(double size, int weight) { return makeFont(size, weight, design::FaceDesign::Monospaced); }

QFont Tokens::tracked(const QFont& font, double points) {
  QFont result = font;
  result.setLetterSpacing(QFont::AbsoluteSpacing, points);
  return result;
}

QFont Tokens::capitals(const QFont& font, double points) {
  QFont result = tracked(font, points);
  result.setCapitalization(QFont::AllUppercase);
  return result;
}

double Tokens::digitWidth(const QFont& font) { return QFontMetricsF(font).horizontalAdvance(digits) / 10; }

bool Tokens::hasEvenDigits(const QFont& font) {
  const QFontMetricsF metrics(font);
  const double first = metrics.horizontalAdvance(digits.front());
  return std::ranges::all_of(digits, [&](QChar digit) { return metrics.horizontalAdvance(digit) == first; });
}

double Tokens::capHeight(const QFont& font) { return QFontMetricsF(font).capHeight(); }

void Tokens::loadFonts() {
  for (const auto& face : {design::face::bodyText, design::face::bodyEmphasis, design::face::caption1,
                           design::face::captionStrong, design::face::sectionCaps, design::face::metric}) {
    static_cast<void>(QFontMetricsF(toFont(face)).capHeight());
  }
}

bool Tokens::breaksWithinWord(const QString& text, const QFont& font, double width) {
  return width >= 1 && breakUp(text, font, width).withinWord;
}

double Tokens::balancedWidth(const QString& text, const QFont& font, double width) {
  if (text.isEmpty() || width < 1) return width;
  const auto pieces = piecesOf(text, font);
  const auto ofPieces = [&pieces](double room) { return breakUp(pieces, room); };
  const auto expected = ofPieces(width);
  if (expected.lines < 2 && !expected.withinWord) return width;
  if (!expected.withinWord) {
    const double least = leastWidth(ofPieces, width, expected.lines);
    const auto actual = breakUp(text, font, least);
    if (actual.lines == expected.lines && !actual.withinWord) return least;
  }
  // Forced line ends, words longer than a line, and letters that move together where pieces meet.
  const auto ofText = [&](double room) { return breakUp(text, font, room); };
  const int lines = ofText(width).lines;
  return lines < 2 ? width : leastWidth(ofText, width, lines);
}

}  // namespace quillmere
