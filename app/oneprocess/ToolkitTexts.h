// The texts that are made without windows, found where those of the windows are: the same catalogues as on a host that
// asks its C library, compiled in.
#pragma once

#include <string>
#include <vector>

namespace quillmere {

/// From now on, in the first of these languages ("de_AT", "de") that there is; English where there is none. Wants the
/// application object. [main]
void useToolkitTexts(const std::vector<std::string>& languages);

}  // namespace quillmere
