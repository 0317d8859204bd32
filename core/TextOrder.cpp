// Collation of names: case is folded first, then the user's locale decides.
#include "core/TextOrder.h"

#include <locale>
#include <optional>
#include <stdexcept>
#include <string>

namespace quillmere {

namespace {

std::optional<std::locale> namedLocale(const char* name) {
  try {
    return std::locale(name);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

struct Order {
  // What the environment names; where that is nothing known, the order of code points.
  std::locale collating = namedLocale("").value_or(std::locale::classic());
  std::locale folding = collating;

  Order() {
    // The C locale folds ASCII only; names of applications are not all ASCII.
    if (std::tolower(L'\u00C9', folding) == L'\u00E9') return;
    folding = namedLocale("C.UTF-8").value_or(folding);
  }
};

/// A byte that is no part of a UTF-8 character is given a place of its own behind all characters, so that one broken
/// name doesn't upset the order of the others.
constexpr char32_t brokenByteBase = 0x10FF00;

struct Character {
  char32_t code = 0;
  std::size_t length = 1;
};

Character decodeAt(std::string_view text, std::size_t position) {
  const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char first = byteAt(position);
  if (first < 0x80) return {first, 1};
  const Character broken{brokenByteBase + first, 1};
  std::size_t length = 0;
  char32_t smallest = 0;
  char32_t code = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2, smallest = 0x80, code = first & 0x1FU;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3, smallest = 0x800, code = first & 0x0FU;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4, smallest = 0x10000, code = first & 0x07U;
  } else {
    return broken;
  }
  if (length > text.size() - position) return broken;
  for (std::size_t index = 1; index < length; ++index) {
    const unsigned char next = byteAt(position + index);
    if ((next & 0xC0U) != 0x80U) return broken;
    code = (code << 6U) | (next & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < smallest || code > 0x10FFFF || isSurrogate) return broken;
  return {code, length};
}

std::wstring folded(std::string_view text, const std::locale& locale) {
  const auto& type = std::use_facet<std::ctype<wchar_t>>(locale);
  std::wstring result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const auto [code, length] = decodeAt(text, position);
    result += type.tolower(static_cast<wchar_t>(code));
    position += length;
  }
  return result;
}

}  // namespace

int compareNames(std::string_view left, std::string_view right) {
  static const Order order;
  const std::wstring foldedLeft = folded(left, order.folding);
  const std::wstring foldedRight = folded(right, order.folding);
  const auto& collate = std::use_facet<std::collate<wchar_t>>(order.collating);
  const int collated = collate.compare(foldedLeft.data(), foldedLeft.data() + foldedLeft.size(), foldedRight.data(),
                                       foldedRight.data() + foldedRight.size());
  if (collated != 0) return collated;
  // Some locales give characters no weight; names that differ are never equal for that.
  return foldedLeft.compare(foldedRight);
}

}  // namespace quillmere
