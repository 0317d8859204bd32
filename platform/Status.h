// The result of a call across a port: 0 for success, a platform code otherwise. Never an exception.
#pragma once

#include <cstdint>

namespace quillmere {

using Status = std::int32_t;
inline constexpr Status noErr = 0;

/// Makes a four-character code, as property selectors and transport types are written. [any]
constexpr std::uint32_t fourCC(const char (&text)[5]) {
  return (static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24U) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16U) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8U) |
         static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]));
}

inline constexpr Status badObjectError = static_cast<Status>(fourCC("!obj"));
inline constexpr Status unknownPropertyError = static_cast<Status>(fourCC("who?"));
inline constexpr Status hardwareNotRunningError = static_cast<Status>(fourCC("stop"));
inline constexpr Status illegalOperationError = static_cast<Status>(fourCC("nope"));
inline constexpr Status unspecifiedError = static_cast<Status>(fourCC("what"));

}  // namespace quillmere
