// White space by its bytes in UTF-8.
#include "core/Trimmed.h"

#include <algorithm>
#include <array>

namespace quillmere {

namespace {

constexpr std::array<std::string_view, 25> blanks{
    "\t",           "\n",           "\v",           "\f",           "\r",           " ",  // ASCII
    "\xC2\x85",                                                                           // next line
    "\xC2\xA0",                                                                           // blank that doesn't break
    "\xE1\x9A\x80",                                                                       // of Ogham
    "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84",       // of several widths
    "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89",       //
    "\xE2\x80\x8A",                                                                       //
    "\xE2\x80\xA8", "\xE2\x80\xA9",                                                       // line, paragraph
    "\xE2\x80\xAF", "\xE2\x81\x9F",                                                       // narrow, mathematical
    "\xE3\x80\x80",                                                                       // ideographic
};

}  // namespace

std::string_view trimmed(std::string_view text) {
  const auto strip = [](auto isAtTheEnd, auto remove) {
    while (true) {
      const auto* blank = std::ranges::find_if(blanks, isAtTheEnd);
      if (blank == blanks.end()) return;
      remove(blank->size());
    }
  };
  strip([&text](std::string_view blank) { return text.starts_with(blank); },
        [&text](std::size_t length) { text.remove_prefix(length); });
  strip([&text](std::string_view blank) { return text.ends_with(blank); },
        [&text](std::size_t length) { text.remove_suffix(length); });
  return text;
}

}  // namespace quillmere
