// Texts from outside, made fit to keep and to show.
#include "text/CleanText.h"

#include <glib.h>

namespace quillmere {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isControl(gunichar character) { return character < 0x20 || (character >= 0x7F && character < 0xA0); }

}  // namespace

std::string cleanText(std::string_view text, std::size_t maxBytes) {
  std::string clean;
  clean.reserve(std::min(text.size(), maxBytes));
  while (!text.empty()) {
    const gunichar character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool broken =
        character == static_cast<gunichar>(-1) || character == static_cast<gunichar>(-2) || character == 0;
    const std::size_t length = broken ? 1 : static_cast<std::size_t>(g_utf8_skip[static_cast<unsigned char>(text[0])]);
    std::string_view piece = broken ? replacement : text.substr(0, length);
    if (text[0] == '\0' || (!broken && isControl(character))) piece = " ";
    if (!(clean.empty() && piece == " ")) {
      if (clean.size() + piece.size() > maxBytes) break;
      clean += piece;
    }
    text.remove_prefix(length);
  }
  while (!clean.empty() && clean.back() == ' ') clean.pop_back();
  return clean;
}

}  // namespace quillmere
