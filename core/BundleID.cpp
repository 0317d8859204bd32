// Cutting helper suffixes off application identifiers.
#include "core/BundleID.h"

#include <algorithm>

namespace quillmere {

namespace {

// The C library's tolower follows the locale; identifiers don't.
constexpr char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

std::string parentKey(std::string_view bundleID) {
  constexpr std::string_view marker = ".helper";
  const auto rest = std::ranges::search(bundleID, marker, {}, lowered);
  return {bundleID.begin(), rest.begin()};
}

}  // namespace quillmere
