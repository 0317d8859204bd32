// The system's own symbols, as coverage.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillmere {

/// One byte a pixel, row by row from the top, without gaps; 255 is full.
struct SymbolMask {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> coverage;
};

/// The symbol of that name, fitted into so many pixels with its proportions kept; `weight` as in style sheets, 100 to
/// 900. Absent where the system has none of that name. [main]
[[nodiscard]] std::optional<SymbolMask> systemSymbol(const std::string& name, int width, int height, int weight);

}  // namespace quillmere
