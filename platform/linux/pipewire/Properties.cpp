#include "Properties.h"

#include <charconv>

namespace quillmere::pipewire {

std::string_view text(const Properties& properties, std::string_view key) {
  const auto found = properties.find(key);
  return found == properties.end() ? std::string_view{} : std::string_view{found->second};
}

std::optional<std::uint32_t> wholeNumber(std::string_view digits) {
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (digits.empty() || error != std::errc{} || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

std::optional<std::uint32_t> number(const Properties& properties, std::string_view key) {
  return wholeNumber(text(properties, key));
}

bool flag(const Properties& properties, std::string_view key) {
  const auto value = text(properties, key);
  return value == "true" || value == "1";
}

}  // namespace quillmere::pipewire
