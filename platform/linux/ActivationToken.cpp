// Two names in the environment: the tokens' own, and the one that came before them.
#include "platform/linux/ActivationToken.h"

#include <cstdlib>

namespace quillmere {

std::string takeActivationToken() {
  std::string token;
  for (const auto* name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
    const char* value = std::getenv(name);
    if (value == nullptr) continue;
    if (token.empty()) token = value;
    ::unsetenv(name);
  }
  return token;
}

}  // namespace quillmere
