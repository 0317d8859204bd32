// A fuzzer's input taken apart into numbers, choices and texts. Past its end everything is zero and empty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace quillmere::fuzz {

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool isEmpty() const { return left_.empty(); }
  std::uint8_t byte() { return number<std::uint8_t>(); }
  bool flag() { return (byte() & 1U) != 0; }
  /// Any bits at all: a float may be no number.
  template <typename Number>
  Number number() {
    Number value{};
    const auto bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  /// 0 up to `count`, which it is not itself; `count` is 1 to 256.
  std::size_t below(std::size_t count) { return byte() % count; }
  template <typename List>
  const auto& oneOf(const List& list) {
    return *std::next(std::begin(list), static_cast<std::ptrdiff_t>(below(std::size(list))));
  }
  /// Its length in a byte before it.
  std::string_view text() { return take(byte()); }
  /// Its length in two bytes before it.
  std::string_view longText() { return take(number<std::uint16_t>()); }
  std::string_view rest() { return take(left_.size()); }

 private:
  std::string_view take(std::size_t count) {
    const auto taken = left_.substr(0, count);
    left_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view left_;
};

}  // namespace quillmere::fuzz
