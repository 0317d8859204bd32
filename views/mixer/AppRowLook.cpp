// The rules of an application's row.
#include "views/mixer/AppRowLook.h"

#include <QCoreApplication>
#include <algorithm>

#include "core/OneLine.h"

namespace quillmere {

namespace {

/// The texts are found in a row's QML context.
struct Texts {
  Q_DECLARE_TR_FUNCTIONS(AppRow)
};

QString toolTip(const AudioApp& app, const QString& name, bool isLive, bool isDucked) {
  if (isDucked) return Texts::tr("Ducked because a call is in progress.");
  // A muted application that sounds says so all the same.
  if (isLive) return Texts::tr("Producing audio right now.");
  if (app.muted) return Texts::tr("%1 is muted.").arg(name);
  return name;
}

}  // namespace

AppRowLook appRowLook(const AudioApp& app, bool isLive, bool isDucked, const std::vector<AudioOutputDevice>& devices) {
  const bool isRouted = app.routedDeviceUID.has_value();
  AppRowLook look;
  look.name = QString::fromStdString(oneLine(app.name));
  look.toolTip = toolTip(app, look.name, isLive, isDucked);
  const auto device =
      std::ranges::find_if(devices, [&](const AudioOutputDevice& each) { return app.routedDeviceUID == each.uid; });
  if (device != devices.end()) look.routedDeviceName = QString::fromStdString(oneLine(device->name));
  if (isDucked) {
    look.statusSymbol = QStringLiteral("waveform.badge.minus");
  } else if (isRouted) {
    look.statusSymbol = QStringLiteral("headphones");
  }
  look.percentColor = app.muted ? QStringLiteral("textTertiary") : QStringLiteral("textSecondary");
  look.routeSymbol = isRouted ? QStringLiteral("headphones.circle.fill") : QStringLiteral("headphones");
  look.routeColor = isRouted ? QStringLiteral("brandSage") : QStringLiteral("textSecondary");
  look.muteSymbol = app.muted ? QStringLiteral("speaker.slash.fill") : QStringLiteral("speaker.wave.2");
  look.muteColor = app.muted ? QStringLiteral("brandRed") : QStringLiteral("textSecondary");
  look.muteTip = app.muted ? Texts::tr("Unmute") : Texts::tr("Mute");
  look.cardSubtitle = isDucked                          ? Texts::tr("Ducked")
                      : look.routedDeviceName.isEmpty() ? QString::fromStdString(app.bundleID)
                                                        : QStringLiteral("→ ") + look.routedDeviceName;
  look.cardPercentColor = app.muted ? QStringLiteral("textTertiary") : QStringLiteral("textPrimary");
  look.muted = app.muted;
  look.live = isLive;
  look.ducked = isDucked;
  return look;
}

}  // namespace quillmere
