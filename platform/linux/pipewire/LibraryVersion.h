// Versions of the daemon's library, which does some things otherwise than it did before.
#pragma once

#include <charconv>
#include <compare>
#include <limits>
#include <string_view>

namespace quillmere::pipewire {

struct LibraryVersion {
  int major = 0;
  int minor = 0;
  int micro = 0;

  friend auto operator<=>(const LibraryVersion&, const LibraryVersion&) = default;
};

/// [any] Of a text as "1.4.2". One that can't be read counts as newer than all others.
[[nodiscard]] inline LibraryVersion libraryVersion(std::string_view text) {
  constexpr int newest = std::numeric_limits<int>::max();
  LibraryVersion version;
  for (int* part : {&version.major, &version.minor, &version.micro}) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *part);
    if (error != std::errc{}) return {newest, newest, newest};
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (part == &version.micro) break;
    if (!text.starts_with('.')) return {newest, newest, newest};
    text.remove_prefix(1);
  }
  return version;
}

}  // namespace quillmere::pipewire
