// The floating-point number that a JSON number's text stands for.
#pragma once

#include <concepts>
#include <string>
#include <version>

namespace quillmere::detail {

/// The number of this type nearest to `text`, which is a JSON number; infinite where it is too large for the type, zero
/// with its sign where it is too small. [any]
template <std::floating_point Number>
Number nearestNumber(const std::string& text);
extern template float nearestNumber(const std::string& text);
extern template double nearestNumber(const std::string& text);

/// The same with the C library's reader, whatever the locale's decimal point. Not every C++ library has its own. [any]
template <std::floating_point Number>
Number nearestNumberOfC(std::string text);
extern template float nearestNumberOfC(std::string text);
extern template double nearestNumberOfC(std::string text);

}  // namespace quillmere::detail
