// The engine's thread before the others.
#include "platform/macos/pure/ThreadCare.h"

#include <cstddef>

#include "platform/EngineQueue.h"

namespace quillmere::macos {

Urgency urgencyOf(std::string_view name) { return name == engineQueueLabel ? Urgency::interactive : Urgency::usual; }

std::string keptName(const std::string& name) {
  constexpr std::size_t longest = 63;
  return name.substr(0, longest);
}

}  // namespace quillmere::macos
