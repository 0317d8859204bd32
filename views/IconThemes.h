// Which icon themes are searched, on desktops that don't tell the toolkit.
#pragma once

#include <QString>
#include <QStringList>

#include "views/DesktopSettings.h"

namespace quillmere {

/// The theme that the desktop's settings name, whether it is installed or not; empty where none is named.
[[nodiscard]] QString configuredIconTheme(const DesktopPlaces& places);

/// The first of the themes with icons for most applications that is installed in these folders; empty where none is.
[[nodiscard]] QString installedIconTheme(const QStringList& searchPaths);

/// Lets icons be found on every desktop: in its own theme, even where the toolkit has not heard of it; then in one that
/// is installed; then in the folders that belong to no theme. To be called before the first icon is asked for. [main]
void useIconThemes(const DesktopPlaces& places);

}  // namespace quillmere
