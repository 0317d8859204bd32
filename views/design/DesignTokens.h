// The numbers of the look: spacing, corners, shadows, colours and type.
// Everything that draws takes them from here, in QML through the singleton Tokens.
#pragma once

namespace quillmere::design {

/// Points.
namespace spacing {
inline constexpr double xs = 4;
inline constexpr double s = 8;
inline constexpr double m = 12;
inline constexpr double l = 16;
inline constexpr double xl = 24;
inline constexpr double xxl = 32;
}  // namespace spacing

/// Corner radii in points.
namespace corner {
inline constexpr double chip = 6;
inline constexpr double card = 10;
inline constexpr double tile = 14;
}  // namespace corner

/// A shadow of black without sideways offset: opacity 0 to 1, blur radius and downward offset in points.
struct Shadow {
  double opacity;
  double radius;
  double offsetDown;
};

namespace elevation {
inline constexpr Shadow resting{0.18, 10, 4};
inline constexpr Shadow hover{0.28, 18, 8};
inline constexpr Shadow hero{0.32, 28, 12};
}  // namespace elevation

/// sRGB components, each 0 to 1.
struct Rgba {
  double red;
  double green;
  double blue;
  double opacity = 1;

  [[nodiscard]] constexpr Rgba at(double share) const { return {red, green, blue, opacity * share}; }
};

/// The brand names are fixed and do not describe the hue: brandSage is a blue, brandCoral a green.
namespace colour {
inline constexpr Rgba white{1, 1, 1};
inline constexpr Rgba black{0, 0, 0};

inline constexpr Rgba brandSage{0.145, 0.388, 0.922};
inline constexpr Rgba brandMint{0.231, 0.51, 0.965};
inline constexpr Rgba brandCoral{0.133, 0.773, 0.369};
inline constexpr Rgba brandRed{0.882, 0.114, 0.282};
inline constexpr Rgba brandAmber{0.98, 0.8, 0.082};
inline constexpr Rgba canvasBG{0.051, 0.059, 0.071};

inline constexpr Rgba cardBG = white.at(0.025);
inline constexpr Rgba cardBGHover = white.at(0.04);
inline constexpr Rgba cardBGSelected = brandSage.at(0.1);
inline constexpr Rgba cardStroke = white.at(0.06);
inline constexpr Rgba cardStrokeHover = white.at(0.1);
inline constexpr Rgba cardStrokeSelected = brandSage.at(0.4);
inline constexpr Rgba hairline = white.at(0.05);

inline constexpr Rgba textPrimary = white.at(0.85);
inline constexpr Rgba textSecondary = white.at(0.55);
inline constexpr Rgba textTertiary = white.at(0.35);

/// What a slider runs on.
inline constexpr Rgba sliderTrack = textPrimary.at(0.1);

/// What a desktop with a theme of its own would answer; these are the dark theme's usual values.
inline constexpr Rgba systemAccent = brandSage;
inline constexpr Rgba systemGrey{0.557, 0.557, 0.576};
inline constexpr Rgba systemGreen{0.188, 0.82, 0.345};

/// The opaque ground of menus and tool tips, which float above the cards.
inline constexpr Rgba floatBG{0.106, 0.118, 0.141};
inline constexpr Rgba floatStroke = white.at(0.12);
/// What stands in for a blurred pane of glass: thin over the backdrop, thick where content may scroll below it.
inline constexpr Rgba thinMaterial = white.at(0.05);
inline constexpr Rgba thickMaterial{0.078, 0.09, 0.11, 0.94};
/// The edge of a window without a frame, over whatever lies beneath.
inline constexpr Rgba windowStroke = white.at(0.24);
inline constexpr Rgba focusRing = brandMint.at(0.9);
}  // namespace colour

/// How much is left of what is muted, 0 to 1; a slider's share is one more on its row's.
namespace opacity {
inline constexpr double mutedRow = 0.55;
inline constexpr double mutedSlider = 0.45;
}  // namespace opacity

/// What takes the place of a token of the same name where the desktop wants contrast: texts of at least seven to one
/// on the canvas, edges of at least three to one.
namespace contrast {
inline constexpr Rgba cardStroke = colour::white.at(0.45);
inline constexpr Rgba cardStrokeHover = colour::white.at(0.7);
inline constexpr Rgba cardStrokeSelected = colour::white.at(0.9);
inline constexpr Rgba hairline = colour::white.at(0.45);
inline constexpr Rgba textPrimary = colour::white;
inline constexpr Rgba textSecondary = colour::white.at(0.9);
inline constexpr Rgba textTertiary = colour::white.at(0.8);
inline constexpr Rgba sliderTrack = colour::white.at(0.35);
inline constexpr double mutedRow = 0.85;
inline constexpr double mutedSlider = 0.75;
inline constexpr Rgba floatStroke = colour::white.at(0.6);
inline constexpr Rgba windowStroke = colour::white.at(0.6);
inline constexpr Rgba focusRing = colour::white;
}  // namespace contrast

enum class FaceDesign { Standard, Monospaced, Rounded };

/// A type style of the system face: size in points, weight on the CSS scale.
struct Face {
  int size;
  int weight;
  FaceDesign design = FaceDesign::Standard;
};

namespace weight {
inline constexpr int light = 300;
inline constexpr int regular = 400;
inline constexpr int medium = 500;
inline constexpr int semibold = 600;
}  // namespace weight

namespace face {
inline constexpr Face heroDisplay{36, weight::semibold};
inline constexpr Face displayXL{28, weight::semibold};
inline constexpr Face displayL{22, weight::semibold};
inline constexpr Face displayM{17, weight::semibold};
inline constexpr Face cardTitle{14, weight::semibold};
inline constexpr Face bodyText{13, weight::regular};
inline constexpr Face bodyEmphasis{13, weight::medium};
inline constexpr Face caption1{11, weight::regular};
inline constexpr Face captionStrong{11, weight::semibold};
inline constexpr Face sectionCaps{10, weight::semibold};
inline constexpr Face metric{12, weight::medium, FaceDesign::Monospaced};
inline constexpr Face metricLarge{22, weight::semibold, FaceDesign::Rounded};
}  // namespace face

}  // namespace quillmere::design
