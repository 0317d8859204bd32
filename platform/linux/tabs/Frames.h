// Messages on a stream of bytes, each after its length: what browsers speak with their helpers, and the helper with the
// mixer. Both ends run on one machine, so a length is four bytes as they lie in memory.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmere::tabs {

/// Bytes. A longer message is taken for garbage: the companion parts what it tells well below it.
inline constexpr std::size_t largestFrame = std::size_t{1} << 20U;

/// The message after its length. [any]
[[nodiscard]] std::string framed(std::string_view message);

/// Puts messages together again. One thread at a time. [any]
class FrameReader {
 public:
  /// Takes bytes as they come; nothing more once they can't be messages.
  void append(std::string_view bytes);
  /// The next whole message.
  [[nodiscard]] std::optional<std::string> next();
  /// The length that can't be one, if one has come.
  [[nodiscard]] std::optional<std::size_t> impossibleLength() const { return impossible_; }
  /// Whether a part of a message is there. Ask when next() has no more.
  [[nodiscard]] bool hasPart() const { return at_ < bytes_.size(); }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
  std::optional<std::size_t> impossible_;
};

}  // namespace quillmere::tabs
