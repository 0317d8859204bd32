// Names on one line.
#include "core/OneLine.h"

#include <array>

namespace quillmere {

namespace {

/// UTF-8 of what ends a line beside the control characters: line separator, paragraph separator.
constexpr std::array<std::string_view, 2> lineEnds{"\xE2\x80\xA8", "\xE2\x80\xA9"};

/// Bytes at the beginning that are one such character; 0 for any other.
std::size_t lineEndAt(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x20 || first == 0x7F) return 1;
  // The control characters behind ASCII, U+0080 to U+009F; next line is one of them.
  const auto second = text.size() > 1 ? static_cast<unsigned char>(text[1]) : 0U;
  if (first == 0xC2 && second >= 0x80 && second <= 0x9F) return 2;
  for (const auto end : lineEnds) {
    if (text.starts_with(end)) return end.size();
  }
  return 0;
}

}  // namespace

std::string oneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  bool isWithin = false;
  while (!text.empty()) {
    const auto length = lineEndAt(text);
    if (length == 0) {
      line += text.front();
    } else if (!isWithin) {
      line += ' ';
    }
    isWithin = length != 0;
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return line;
}

}  // namespace quillmere
