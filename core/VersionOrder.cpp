// Versions as texts of numbers separated by dots.
#include "core/VersionOrder.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

namespace quillmere {

namespace {

std::vector<std::int64_t> parts(std::string_view text) {
  std::vector<std::int64_t> numbers;
  while (!text.empty()) {
    const auto dot = std::min(text.find('.'), text.size());
    const auto part = text.substr(0, dot);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
    if (!part.empty() && error == std::errc() && end == part.data() + part.size()) numbers.push_back(number);
    text.remove_prefix(std::min(dot + 1, text.size()));
  }
  return numbers;
}

}  // namespace

bool isOutdated(std::string_view current, std::string_view latest) {
  auto running = parts(current);
  auto newest = parts(latest);
  const auto length = std::max(running.size(), newest.size());
  running.resize(length);
  newest.resize(length);
  return std::lexicographical_compare(running.begin(), running.end(), newest.begin(), newest.end());
}

}  // namespace quillmere
