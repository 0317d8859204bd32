// The icon theme where the desktop names none: a toolkit without a desktop's own plugin finds an application's icon
// only if that brings one along.
#pragma once

#include <QString>
#include <QStringList>

namespace quillmere {

/// The theme to take icons from.
/// @param named    what the desktop has named; empty or the bare fall-back of all themes where it has named none
/// @param themes   folders of themes, in the order in which they are searched
/// @param settings the folder of the user's settings, for what other toolkits have been told there
/// Empty where none is installed. [any]
[[nodiscard]] QString iconThemeFor(const QString& named, const QStringList& themes, const QString& settings);

/// Gives the toolkit such a theme if it has none. Looks only once while the toolkit names the same. [main]
void ensureIconTheme();

}  // namespace quillmere
