#include "LinkGroup.h"

namespace quillmere::pipewire {
namespace {

/// The next name of a list, which loses it; without the blanks around it.
std::string_view takeName(std::string_view& list) {
  const auto comma = list.find(',');
  auto name = list.substr(0, comma);
  list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
  const auto first = name.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return name.substr(first, name.find_last_not_of(' ') - first + 1);
}

bool contains(std::string_view list, std::string_view name) {
  while (!list.empty()) {
    if (takeName(list) == name) return true;
  }
  return false;
}

/// Streams and devices, the session manager's hidden ones too. A node without a class is linked by hand, both ways.
bool takesSound(std::string_view mediaClass) {
  return mediaClass.empty() || mediaClass.starts_with("Audio/Sink") || mediaClass.starts_with("Audio/Duplex") ||
         mediaClass.starts_with("Stream/Input/Audio");
}

bool givesSound(std::string_view mediaClass) {
  return mediaClass.empty() || mediaClass.starts_with("Audio/Source") || mediaClass.starts_with("Audio/Duplex") ||
         mediaClass.starts_with("Stream/Output/Audio");
}

}  // namespace

bool shareLinkGroup(std::string_view one, std::string_view other) {
  while (!one.empty()) {
    const auto name = takeName(one);
    if (!name.empty() && contains(other, name)) return true;
  }
  return false;
}

bool areTwoSides(const Properties& one, const Properties& other) {
  const auto first = text(one, "media.class");
  const auto second = text(other, "media.class");
  return (takesSound(first) && givesSound(second)) || (givesSound(first) && takesSound(second));
}

}  // namespace quillmere::pipewire
