// The configuration that gives a client's data thread real-time priority. It has another name in every second library.
#pragma once

#include <charconv>
#include <string_view>

namespace quillmere::pipewire {

/// [any] Its name for a library of this version, as "1.4.2". Up to 1.2 the plain configuration gives no priority; from
/// 1.4 on it does, and the name of before only makes the library warn. A version that can't be read counts as a new
/// one.
[[nodiscard]] inline const char* realTimeConfiguration(std::string_view libraryVersion) {
  int major = 0;
  int minor = 0;
  const char* const end = libraryVersion.data() + libraryVersion.size();
  const auto first = std::from_chars(libraryVersion.data(), end, major);
  const bool isRead = first.ec == std::errc{} && first.ptr != end && *first.ptr == '.' &&
                      std::from_chars(first.ptr + 1, end, minor).ec == std::errc{};
  const bool isOld = isRead && (major < 1 || (major == 1 && minor < 4));
  return isOld ? "client-rt.conf" : "client.conf";
}

}  // namespace quillmere::pipewire
