// The version of this program.
#include "shell/AppVersion.h"

namespace quillmere {

std::string_view appVersion() { return QUILLMERE_VERSION; }

}  // namespace quillmere
