// What desktops and other toolkits keep in their settings files, for the few things that the toolkit has not been told.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <span>

namespace quillmere {

/// Where a desktop's own words are to be found.
struct DesktopPlaces {
  /// The user's configuration folder.
  QString configHome;
  /// What the session's desktop is called, the most particular name first.
  QStringList desktops;
};

/// One key of one file.
struct DesktopSetting {
  /// Below the configuration folder.
  QLatin1StringView file;
  QLatin1StringView key;
  /// The desktop whose file this is; empty for one that many share.
  QLatin1StringView desktop;
};

/// The places of the session that runs. [main]
[[nodiscard]] DesktopPlaces desktopPlaces();

/// What these settings say, in their order, without those that say nothing or are another desktop's. Reads a file or
/// two; what is no file of settings says nothing. [any]
[[nodiscard]] QList<QVariant> desktopSettings(std::span<const DesktopSetting> settings, const DesktopPlaces& places);

}  // namespace quillmere
