// The text properties of the daemon's objects, and careful readers for them. Pure: [any].
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillmere::pipewire {

using Properties = std::map<std::string, std::string, std::less<>>;

/// The value, or an empty text.
[[nodiscard]] std::string_view text(const Properties& properties, std::string_view key);
/// A whole decimal number that fits; anything else is absent.
[[nodiscard]] std::optional<std::uint32_t> wholeNumber(std::string_view digits);
[[nodiscard]] std::optional<std::uint32_t> number(const Properties& properties, std::string_view key);
/// "true" or "1".
[[nodiscard]] bool flag(const Properties& properties, std::string_view key);

}  // namespace quillmere::pipewire
