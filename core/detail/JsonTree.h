// A JSON text as a tree that keeps numbers as they were written.
// A float read by way of a double could be off by one unit: the digits are kept until the wanted type is known.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::detail {

struct JsonTree {
  enum class Kind { null, boolean, number, text, list, object };

  Kind kind = Kind::null;
  bool boolean = false;
  /// The characters of a text, the digits of a number.
  std::string text;
  /// A number's value if it is whole, whether written 300, 300.0 or 3e2. With a point or an exponent only up to 2^53.
  std::optional<std::int64_t> whole;
  /// The elements of a list, the values of an object.
  std::vector<JsonTree> items;
  /// An object's keys, one for each item.
  std::vector<std::string> keys;

  /// Absent if the text is not one JSON value, holds broken UTF-8, a number beyond a double, or is nested deeper than
  /// 512; `problem` then says where.
  static std::optional<JsonTree> parse(std::string_view text, std::string& problem);

  /// The value under a key of an object; of two equal keys the later one counts. Null if there is none.
  [[nodiscard]] const JsonTree* find(std::string_view key) const;
  /// "a text", "an object", ... for messages.
  [[nodiscard]] static const char* nameOf(Kind kind);
};

}  // namespace quillmere::detail
