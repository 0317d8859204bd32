// Which icon themes are searched, on desktops that don't tell the toolkit.
#pragma once

#include <QString>
#include <QStringList>

namespace quillmere {

/// Where a desktop's own words on its icons are to be found.
struct IconThemePlaces {
  /// The user's configuration folder.
  QString configHome;
  /// What the session's desktop is called, the most particular name first.
  QStringList desktops;
};

/// The places of the session that runs.
[[nodiscard]] IconThemePlaces iconThemePlaces();

/// The theme that the desktop's settings name, whether it is installed or not; empty where none is named.
[[nodiscard]] QString configuredIconTheme(const IconThemePlaces& places);

/// The first of the themes with icons for most applications that is installed in these folders; empty where none is.
[[nodiscard]] QString installedIconTheme(const QStringList& searchPaths);

/// Lets icons be found on every desktop: in its own theme, even where the toolkit has not heard of it; then in one that
/// is installed; then in the folders that belong to no theme. To be called before the first icon is asked for. [main]
void useIconThemes(const IconThemePlaces& places);

}  // namespace quillmere
