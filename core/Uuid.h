// A 128-bit identity with the canonical upper-case text form.
// Fresh ones are random (version 4); parsing takes either case.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmere {

struct Uuid {
  std::array<std::uint8_t, 16> bytes{};

  /// A fresh random identity (RFC 9562, version 4). [any]
  static Uuid random();
  /// Reads the canonical 36-character form, either case; anything else is absent.
  static std::optional<Uuid> parse(std::string_view text);
  /// The canonical 36-character form in upper case.
  [[nodiscard]] std::string text() const;

  friend bool operator==(const Uuid&, const Uuid&) = default;
  friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::Uuid> {
  std::size_t operator()(const quillmere::Uuid& id) const noexcept;
};
