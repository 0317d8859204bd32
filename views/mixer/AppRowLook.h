// What an application's row shows, derived from the state: texts, symbols and colour tokens.
// A pure function; the colours are names of the design's tokens.
#pragma once

#include <QString>
#include <vector>

#include "core/AudioApp.h"
#include "engine/AudioOutputDevice.h"

namespace quillmere {

struct AppRowLook {
  QString name;
  QString toolTip;
  /// Name of the device that the application is pinned to; empty if it is pinned to none that is there.
  QString routedDeviceName;
  /// Beside the percentage; empty for none.
  QString statusSymbol;
  QString percentColor;
  QString routeSymbol;
  QString routeColor;
  QString muteSymbol;
  QString muteColor;
  QString muteTip;
  /// The main window's second line: what is special about the application, else its identifier.
  QString cardSubtitle;
  QString cardPercentColor;
  bool muted = false;
  bool live = false;
  bool ducked = false;

  friend bool operator==(const AppRowLook&, const AppRowLook&) = default;
};

[[nodiscard]] AppRowLook appRowLook(const AudioApp& app, bool isLive, bool isDucked,
                                    const std::vector<AudioOutputDevice>& devices);

}  // namespace quillmere
