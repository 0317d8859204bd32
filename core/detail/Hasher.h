// One running hash that records are fed into, field by field.
// FNV-1a over 64 bits: equal values give equal hashes, in this process and in any other.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace quillmere::detail {

class Hasher {
 public:
  void feedByte(std::uint8_t byte) {
    state_ ^= byte;
    state_ *= 1099511628211U;
  }

  template <typename Integer>
  void feedInteger(Integer value) {
    for (std::size_t shift = 0; shift < sizeof(Integer) * 8; shift += 8) {
      feedByte(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> shift));
    }
  }

  /// -0.0 is equal to 0.0, so it is fed as 0.0.
  void feed(float value) { feedInteger(std::bit_cast<std::uint32_t>(value == 0.0F ? 0.0F : value)); }
  void feed(double value) { feedInteger(std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value)); }
  void feed(bool value) { feedByte(value ? 1 : 0); }

  /// The closing byte, which no UTF-8 text holds, keeps "ab","c" apart from "a","bc".
  void feed(std::string_view text) {
    for (const char character : text) feedByte(static_cast<std::uint8_t>(character));
    feedByte(0xFF);
  }

  void feed(const std::optional<std::string>& text) {
    feedByte(text ? 1 : 0);
    if (text) feed(std::string_view(*text));
  }

  /// A set is always walked in one order, whatever the order of its insertions.
  void feed(const std::set<std::string>& texts) {
    feedInteger(texts.size());
    for (const auto& text : texts) feed(std::string_view(text));
  }

  [[nodiscard]] std::size_t finish() const { return static_cast<std::size_t>(state_); }

 private:
  std::uint64_t state_ = 14695981039346656037U;
};

}  // namespace quillmere::detail
