#include "platform/macos/pure/MediaKeyEvent.h"

namespace quillmere::macos {

namespace {

// A media key's state is told twice: in the modifier flags, and in the low half of data1.
constexpr std::uint64_t keyDown = 0xA00;
constexpr std::uint64_t keyUp = 0xB00;
/// Of a system-defined event: an auxiliary key of the keyboard.
constexpr std::int16_t auxiliaryKey = 8;

}  // namespace

MediaKeyEvent mediaKeyEvent(std::int32_t key, bool isDown) {
  const auto state = isDown ? keyDown : keyUp;
  return {state, auxiliaryKey, (static_cast<std::int64_t>(key) << 16) | static_cast<std::int64_t>(state), -1};
}

}  // namespace quillmere::macos
