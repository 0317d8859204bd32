// A gain as people read it.
#pragma once

#include <QString>

namespace quillmere {

/// "39%", as the language writes percentages: truncated, never rounded. [main]
[[nodiscard]] QString percentText(float gain);

}  // namespace quillmere
