// Parts of a tag.
#include "platform/macos/pure/LanguageTags.h"

#include <cstddef>
#include <string_view>

namespace quillmere::macos {

namespace {

constexpr std::size_t countryLetters = 2;
constexpr std::size_t areaDigits = 3;

/// A script has four letters, a country two, or it is an area of three digits.
bool isCountry(std::string_view part) {
  if (part.size() == countryLetters) return true;
  return part.size() == areaDigits && part.front() >= '0' && part.front() <= '9';
}

}  // namespace

std::string localeName(const std::string& languageTag) {
  std::string_view rest = languageTag;
  const auto next = [&rest] {
    const auto end = rest.find('-');
    const auto part = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return part;
  };
  std::string name(next());
  while (!rest.empty()) {
    const auto part = next();
    if (!isCountry(part)) continue;
    name += '_';
    name += part;
    break;
  }
  return name;
}

}  // namespace quillmere::macos
