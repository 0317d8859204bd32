// The texts of the windows in the language of who reads them.
#pragma once

#include <string>
#include <vector>

namespace quillmere {

/// Loads the texts, and the toolkit's own where those are installed, in the first of these languages ("de_AT", "de")
/// that there is; English where there is none. Texts that were made before keep their language. Wants the application
/// object. Returns the language that was loaded: "de". [main]
std::string installTranslation(const std::vector<std::string>& languages);

}  // namespace quillmere
