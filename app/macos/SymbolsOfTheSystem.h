// The views' symbols as a Mac draws them.
#pragma once

namespace quillmere {

/// Before the first window. [main]
void useSymbolsOfTheSystem();

}  // namespace quillmere
