// Making, reading and writing identities.
#include "core/Uuid.h"

#include <random>

#include "detail/Hasher.h"

namespace quillmere {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isDash(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<unsigned> hexDigit(char character) {
  if (character >= '0' && character <= '9') return static_cast<unsigned>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a') + 10U;
  if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A') + 10U;
  return std::nullopt;
}

}  // namespace

Uuid Uuid::random() {
  std::random_device source;
  Uuid id;
  for (std::size_t index = 0; index < id.bytes.size(); index += 4) {
    const std::uint32_t word = source();
    for (std::size_t part = 0; part < 4; ++part) {
      id.bytes[index + part] = static_cast<std::uint8_t>(word >> (part * 8U));
    }
  }
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0FU) | 0x40U);
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3FU) | 0x80U);
  return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != textLength) return std::nullopt;
  Uuid id;
  std::size_t digits = 0;
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (isDash(position)) {
      if (text[position] != '-') return std::nullopt;
      continue;
    }
    const auto digit = hexDigit(text[position]);
    if (!digit) return std::nullopt;
    auto& byte = id.bytes[digits / 2];
    byte = static_cast<std::uint8_t>((static_cast<unsigned>(byte) << 4U) | *digit);
    ++digits;
  }
  return id;
}

std::string Uuid::text() const {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(textLength);
  for (const auto byte : bytes) {
    if (isDash(text.size())) text += '-';
    text += digits[byte >> 4U];
    text += digits[byte & 0x0FU];
  }
  return text;
}

}  // namespace quillmere

std::size_t std::hash<quillmere::Uuid>::operator()(const quillmere::Uuid& id) const noexcept {
  quillmere::detail::Hasher hasher;
  for (const auto byte : id.bytes) hasher.feedByte(byte);
  return hasher.finish();
}
