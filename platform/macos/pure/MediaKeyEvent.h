// The system-defined event that stands for one half of a press of a media key.
#pragma once

#include <cstdint>

namespace quillmere::macos {

/// The numbers of an NSEvent of the type systemDefined, as its factory takes them.
struct MediaKeyEvent {
  std::uint64_t modifierFlags = 0;
  std::int16_t subtype = 0;
  std::int64_t data1 = 0;
  std::int64_t data2 = 0;

  friend bool operator==(const MediaKeyEvent&, const MediaKeyEvent&) = default;
};

/// The event of `key` (mediakey::) going down or up. [any]
MediaKeyEvent mediaKeyEvent(std::int32_t key, bool isDown);

}  // namespace quillmere::macos
