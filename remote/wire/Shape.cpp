// One walk over the heads of the values.
#include "wire/Shape.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillmere::wire {
namespace {

/// The upper three bits of a value's first byte.
enum Major : std::uint8_t { unsignedNumber, negativeNumber, bytes, text, list, object, tag, simple };

constexpr std::uint8_t majorShift = 5;
constexpr std::uint8_t infoMask = 0x1F;
/// Up to here the number stands in the first byte itself.
constexpr std::uint8_t lastShort = 23;
/// 1, 2, 4 or 8 bytes of it follow.
constexpr std::uint8_t lastLong = 27;

class Walk {
 public:
  explicit Walk(std::string_view left) : left_(left) {}

  [[nodiscard]] bool isWhole() {
    std::vector<std::uint64_t> open{1};
    while (!open.empty()) {
      if (open.back() == 0) {
        open.pop_back();
        continue;
      }
      --open.back();
      const auto children = next();
      if (!children) return false;
      if (*children == 0) continue;
      if (open.size() > deepest) return false;
      open.push_back(*children);
    }
    return left_.empty();
  }

 private:
  /// How many values lie in this one; absent where it is none of ours.
  std::optional<std::uint64_t> next() {
    if (left_.empty()) return std::nullopt;
    const auto head = static_cast<std::uint8_t>(left_.front());
    left_.remove_prefix(1);
    const auto argument = number(head & infoMask);
    if (!argument) return std::nullopt;
    switch (static_cast<Major>(head >> majorShift)) {
      case unsignedNumber:
      case negativeNumber:
      case simple:
        return 0;
      case bytes:
      case text:
        if (*argument > left_.size()) return std::nullopt;
        left_.remove_prefix(static_cast<std::size_t>(*argument));
        return 0;
      case list:
        // Each takes a byte at least.
        return *argument <= left_.size() ? argument : std::nullopt;
      case object:
        return *argument <= left_.size() / 2 ? std::optional(*argument * 2) : std::nullopt;
      case tag:
        break;
    }
    return std::nullopt;
  }

  std::optional<std::uint64_t> number(std::uint8_t info) {
    if (info <= lastShort) return info;
    if (info > lastLong) return std::nullopt;
    const auto size = std::size_t{1} << static_cast<unsigned>(info - lastShort - 1);
    if (size > left_.size()) return std::nullopt;
    std::uint64_t value = 0;
    for (const char byte : left_.substr(0, size)) value = value << 8U | static_cast<std::uint8_t>(byte);
    left_.remove_prefix(size);
    return value;
  }

  std::string_view left_;
};

}  // namespace

bool hasShapeOfMessage(std::string_view bytes) { return Walk(bytes).isWhole(); }

}  // namespace quillmere::wire
