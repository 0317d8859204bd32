// The family of the face in which the desktop writes.
#pragma once

#include <QString>

#include "views/DesktopSettings.h"

namespace quillmere {

/// The toolkit's own family where the desktop has told it one; else what the desktop's settings or those of another
/// toolkit name; else the toolkit's word for any face. Reads a file or two.
[[nodiscard]] QString desktopFontFamily(const QString& toolkits, const DesktopPlaces& places);

}  // namespace quillmere
