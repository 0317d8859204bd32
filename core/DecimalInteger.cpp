// The library's own parser, which knows no plus sign.
#include "core/DecimalInteger.h"

#include <charconv>
#include <system_error>

namespace quillmere {

std::optional<std::int64_t> decimalInteger(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto* end = text.data() + text.size();
  const auto [read, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || read != end) return std::nullopt;
  return value;
}

}  // namespace quillmere
