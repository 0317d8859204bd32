// The look for QML: one read-only singleton with every value of DesignTokens.h.
// Points are Qt Quick's device-independent pixels.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QFont>
#include <QObject>

#include "views/design/DesignTokens.h"

namespace quillmere {

/// A shadow as QML hands it around.
class ShadowStyle {
  Q_GADGET
  QML_VALUE_TYPE(shadowStyle)
  Q_PROPERTY(QColor color MEMBER color CONSTANT)
  Q_PROPERTY(double radius MEMBER radius CONSTANT)
  Q_PROPERTY(double offsetDown MEMBER offsetDown CONSTANT)

 public:
  ShadowStyle() = default;
  explicit ShadowStyle(const design::Shadow& shadow);
  bool operator==(const ShadowStyle&) const = default;

  QColor color;
  double radius = 0;
  double offsetDown = 0;
};

class SpacingTokens {
  Q_GADGET
  QML_VALUE_TYPE(spacingTokens)
  Q_PROPERTY(double xs READ xs CONSTANT)
  Q_PROPERTY(double s READ s CONSTANT)
  Q_PROPERTY(double m READ m CONSTANT)
  Q_PROPERTY(double l READ l CONSTANT)
  Q_PROPERTY(double xl READ xl CONSTANT)
  Q_PROPERTY(double xxl READ xxl CONSTANT)

 public:
  static double xs() { return design::spacing::xs; }
  static double s() { return design::spacing::s; }
  static double m() { return design::spacing::m; }
  static double l() { return design::spacing::l; }
  static double xl() { return design::spacing::xl; }
  static double xxl() { return design::spacing::xxl; }
};

class CornerTokens {
  Q_GADGET
  QML_VALUE_TYPE(cornerTokens)
  Q_PROPERTY(double chip READ chip CONSTANT)
  Q_PROPERTY(double card READ card CONSTANT)
  Q_PROPERTY(double tile READ tile CONSTANT)

 public:
  static double chip() { return design::corner::chip; }
  static double card() { return design::corner::card; }
  static double tile() { return design::corner::tile; }
};

class ElevationTokens {
  Q_GADGET
  QML_VALUE_TYPE(elevationTokens)
  Q_PROPERTY(quillmere::ShadowStyle resting READ resting CONSTANT)
  Q_PROPERTY(quillmere::ShadowStyle hover READ hover CONSTANT)
  Q_PROPERTY(quillmere::ShadowStyle hero READ hero CONSTANT)

 public:
  static ShadowStyle resting() { return ShadowStyle(design::elevation::resting); }
  static ShadowStyle hover() { return ShadowStyle(design::elevation::hover); }
  static ShadowStyle hero() { return ShadowStyle(design::elevation::hero); }
};

[[nodiscard]] QColor toColor(const design::Rgba& colour);
[[nodiscard]] QFont toFont(const design::Face& face);

/// [main]
class Tokens : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  Q_PROPERTY(quillmere::SpacingTokens spacing MEMBER spacing_ CONSTANT)
  Q_PROPERTY(quillmere::CornerTokens corner MEMBER corner_ CONSTANT)
  Q_PROPERTY(quillmere::ElevationTokens elevation MEMBER elevation_ CONSTANT)

  Q_PROPERTY(QColor brandSage MEMBER brandSage_ CONSTANT)
  Q_PROPERTY(QColor brandMint MEMBER brandMint_ CONSTANT)
  Q_PROPERTY(QColor brandCoral MEMBER brandCoral_ CONSTANT)
  Q_PROPERTY(QColor brandRed MEMBER brandRed_ CONSTANT)
  Q_PROPERTY(QColor brandAmber MEMBER brandAmber_ CONSTANT)
  Q_PROPERTY(QColor canvasBG MEMBER canvasBG_ CONSTANT)
  Q_PROPERTY(QColor cardBG MEMBER cardBG_ CONSTANT)
  Q_PROPERTY(QColor cardBGHover MEMBER cardBGHover_ CONSTANT)
  Q_PROPERTY(QColor cardBGSelected MEMBER cardBGSelected_ CONSTANT)
  Q_PROPERTY(QColor cardStroke READ cardStroke NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor cardStrokeHover READ cardStrokeHover NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor cardStrokeSelected READ cardStrokeSelected NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor hairline READ hairline NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor textPrimary READ textPrimary NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor textTertiary READ textTertiary NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor sliderTrack READ sliderTrack NOTIFY contrastChanged FINAL)
  Q_PROPERTY(double mutedRow READ mutedRow NOTIFY contrastChanged FINAL)
  Q_PROPERTY(double mutedSlider READ mutedSlider NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor white MEMBER white_ CONSTANT)
  Q_PROPERTY(QColor black MEMBER black_ CONSTANT)
  Q_PROPERTY(QColor clear MEMBER clear_ CONSTANT)
  Q_PROPERTY(QColor systemAccent MEMBER systemAccent_ CONSTANT)
  Q_PROPERTY(QColor systemGrey MEMBER systemGrey_ CONSTANT)
  Q_PROPERTY(QColor systemGreen MEMBER systemGreen_ CONSTANT)
  Q_PROPERTY(QColor floatBG MEMBER floatBG_ CONSTANT)
  Q_PROPERTY(QColor floatStroke READ floatStroke NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor thinMaterial MEMBER thinMaterial_ CONSTANT)
  Q_PROPERTY(QColor thickMaterial MEMBER thickMaterial_ CONSTANT)
  Q_PROPERTY(QColor windowStroke READ windowStroke NOTIFY contrastChanged FINAL)
  Q_PROPERTY(QColor focusRing READ focusRing NOTIFY contrastChanged FINAL)

  Q_PROPERTY(QFont heroDisplay MEMBER heroDisplay_ CONSTANT)
  Q_PROPERTY(QFont displayXL MEMBER displayXL_ CONSTANT)
  Q_PROPERTY(QFont displayL MEMBER displayL_ CONSTANT)
  Q_PROPERTY(QFont displayM MEMBER displayM_ CONSTANT)
  Q_PROPERTY(QFont cardTitle MEMBER cardTitle_ CONSTANT)
  Q_PROPERTY(QFont bodyText MEMBER bodyText_ CONSTANT)
  Q_PROPERTY(QFont bodyEmphasis MEMBER bodyEmphasis_ CONSTANT)
  Q_PROPERTY(QFont caption1 MEMBER caption1_ CONSTANT)
  Q_PROPERTY(QFont captionStrong MEMBER captionStrong_ CONSTANT)
  Q_PROPERTY(QFont sectionCaps MEMBER sectionCaps_ CONSTANT)
  Q_PROPERTY(QFont metric MEMBER metric_ CONSTANT)
  Q_PROPERTY(QFont metricLarge MEMBER metricLarge_ CONSTANT)

 public:
  explicit Tokens(QObject* parent = nullptr);

  // What stands out more where the desktop wants contrast.
  [[nodiscard]] QColor cardStroke() const { return cardStroke_; }
  [[nodiscard]] QColor cardStrokeHover() const { return cardStrokeHover_; }
  [[nodiscard]] QColor cardStrokeSelected() const { return cardStrokeSelected_; }
  [[nodiscard]] QColor hairline() const { return hairline_; }
  [[nodiscard]] QColor textPrimary() const { return textPrimary_; }
  [[nodiscard]] QColor textSecondary() const { return textSecondary_; }
  [[nodiscard]] QColor textTertiary() const { return textTertiary_; }
  [[nodiscard]] QColor sliderTrack() const { return sliderTrack_; }
  [[nodiscard]] double mutedRow() const { return mutedRow_; }
  [[nodiscard]] double mutedSlider() const { return mutedSlider_; }
  [[nodiscard]] QColor floatStroke() const { return floatStroke_; }
  [[nodiscard]] QColor windowStroke() const { return windowStroke_; }
  [[nodiscard]] QColor focusRing() const { return focusRing_; }

  /// The colour with its opacity multiplied by share (0 to 1).
  Q_INVOKABLE static QColor alpha(const QColor& color, double share);
  /// The colour that top at full opacity share gives when it is added to an opaque ground (plus-lighter).
  Q_INVOKABLE static QColor lightened(const QColor& ground, const QColor& top, double share);
  /// The system face at a size in points that no token has.
  Q_INVOKABLE static QFont face(double size, int weight = design::weight::regular);
  /// The monospaced design, for texts whose digits must not dance.
  Q_INVOKABLE static QFont monospaced(double size, int weight = design::weight::regular);
  /// The font with a tracking in points.
  Q_INVOKABLE static QFont tracked(const QFont& font, double points);
  /// The font in capitals with a tracking in points; the text itself keeps its letters.
  Q_INVOKABLE static QFont capitals(const QFont& font, double points);
  /// The mean advance of the font's digits, in points: evenly set, they take no more room than set as they are.
  Q_INVOKABLE static double digitWidth(const QFont& font);
  /// Whether all of the font's digits have the same advance.
  Q_INVOKABLE static bool hasEvenDigits(const QFont& font);
  /// The height of the font's capitals, in points.
  Q_INVOKABLE static double capHeight(const QFont& font);
  /// Loads the faces that every window's first picture wants, for whoever has the time while its scene is read.
  static void loadFonts();
  /// The least width, at most width, at which the text takes no more lines than at width and,
  /// where it can be helped, no line ends within a word.
  Q_INVOKABLE static double balancedWidth(const QString& text, const QFont& font, double width);
  /// Whether a line would end within a word were the text wrapped to the width.
  Q_INVOKABLE static bool breaksWithinWord(const QString& text, const QFont& font, double width);

 Q_SIGNALS:
  void contrastChanged();

 private:
  void readContrast();

  SpacingTokens spacing_;
  CornerTokens corner_;
  ElevationTokens elevation_;
  QColor brandSage_, brandMint_, brandCoral_, brandRed_, brandAmber_, canvasBG_;
  QColor cardBG_, cardBGHover_, cardBGSelected_, cardStroke_, cardStrokeHover_, cardStrokeSelected_, hairline_;
  QColor textPrimary_, textSecondary_, textTertiary_, white_, black_, clear_;
  QColor systemAccent_, systemGrey_, systemGreen_, floatBG_, floatStroke_, windowStroke_, focusRing_;
  QColor thinMaterial_, thickMaterial_, sliderTrack_;
  double mutedRow_ = design::opacity::mutedRow;
  double mutedSlider_ = design::opacity::mutedSlider;
  QFont heroDisplay_, displayXL_, displayL_, displayM_, cardTitle_, bodyText_, bodyEmphasis_, caption1_;
  QFont captionStrong_, sectionCaps_, metric_, metricLarge_;
};

}  // namespace quillmere
