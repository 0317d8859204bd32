#include "detail/NearestNumber.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

namespace quillmere::detail {

template <std::floating_point Number>
Number nearestNumberOfC(std::string text) {
  if (const auto point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, std::localeconv()->decimal_point);
  }
  if constexpr (std::same_as<Number, float>) {
    return std::strtof(text.c_str(), nullptr);
  } else {
    return std::strtod(text.c_str(), nullptr);
  }
}

template float nearestNumberOfC(std::string text);
template double nearestNumberOfC(std::string text);

#if defined(__cpp_lib_to_chars)
template <std::floating_point Number>
Number nearestNumber(const std::string& text) {
  const auto* const start = text.data();
  const auto* const end = start + text.size();
  Number number{};
  if (std::from_chars(start, end, number).ec == std::errc()) return number;
  // It doesn't say at which end of the range the text is.
  double wide = 0.0;
  const bool isLarge = std::from_chars(start, end, wide).ec == std::errc() ? std::abs(wide) > 1.0
                                                                           : std::isinf(nearestNumberOfC<double>(text));
  const Number magnitude = isLarge ? std::numeric_limits<Number>::infinity() : Number{0.0};
  return text.front() == '-' ? -magnitude : magnitude;
}
#else
template <std::floating_point Number>
Number nearestNumber(const std::string& text) {
  return nearestNumberOfC<Number>(text);
}
#endif

template float nearestNumber(const std::string& text);
template double nearestNumber(const std::string& text);

}  // namespace quillmere::detail
