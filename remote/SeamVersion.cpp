// The descriptions of what crosses, as one text, and its digest.
#include "remote/SeamVersion.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "core/Product.h"

namespace quillmere {

namespace {

constexpr std::string_view described =
#define FIELD(type, name, ...) "field " #type " " #name "\n"
#include "state/MixerFields.def"
#define OPERATION(name, parameters, arguments) "operation " #name #parameters "\n"
#include "state/MixerOperations.def"
#define RECORD(name, ...) "record " #name " " #__VA_ARGS__ "\n"
#include "wire/Records.def"
    ;

/// FNV-1a, of 32 bits: it tells versions of one text apart, and guards against nobody.
constexpr std::uint32_t digest(std::string_view text) {
  std::uint32_t hash = 2166136261U;
  for (const char each : text) hash = (hash ^ static_cast<unsigned char>(each)) * 16777619U;
  return hash;
}

}  // namespace

std::string seamVersion() {
  std::array<char, 8> digits{};
  constexpr int base = 16;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), digest(described), base).ptr;
  return std::string(appVersion()) + " (" + std::string(digits.data(), end) + ")";
}

}  // namespace quillmere
