// Cuts at borders of UTF-8 characters. What is no UTF-8 may be cut anywhere near.
#include "core/Shortened.h"

namespace quillmere {

namespace {

constexpr std::string_view ellipsis = "…";
/// No character has more bytes behind its first one.
constexpr int mostContinuations = 3;

/// Whether the byte belongs to the character before it.
bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// The nearest border of characters at or before `at`.
std::size_t borderBefore(std::string_view text, std::size_t at) {
  auto border = at;
  for (int step = 0; step < mostContinuations && border > 0 && continues(text[border]); ++step) --border;
  return continues(text[border]) ? at : border;
}

/// The nearest border of characters at or after `at`.
std::size_t borderAfter(std::string_view text, std::size_t at) {
  auto border = at;
  for (int step = 0; step < mostContinuations && border < text.size() && continues(text[border]); ++step) ++border;
  return border < text.size() && continues(text[border]) ? at : border;
}

}  // namespace

std::string shortened(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return std::string(text);
  const auto kept = bytes - ellipsis.size();
  const auto tail = borderAfter(text, text.size() - kept / 2);
  const auto head = borderBefore(text, kept - kept / 2);
  std::string result(text.substr(0, head));
  result += ellipsis;
  return result += text.substr(tail);
}

std::string_view shortenedAddress(std::string_view address, std::size_t bytes) {
  if (address.size() <= bytes) return address;
  const auto cut = address.substr(0, borderBefore(address, bytes));
  // "%E" and "%" are the beginning of a character that the cut has halved.
  const auto escape = cut.rfind('%');
  return escape != std::string_view::npos && cut.size() - escape < 3 ? cut.substr(0, escape) : cut;
}

}  // namespace quillmere
