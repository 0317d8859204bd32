// One press of a media key, down and up, and what it is for.
#pragma once

#include <cstdint>

namespace quillmere {

namespace mediakey {
inline constexpr std::int32_t play = 16;
inline constexpr std::int32_t next = 17;
inline constexpr std::int32_t previous = 18;

/// Why the key is pressed. The play key is a toggle, so a host that can only press keys presses it in any case; a host
/// that can say to a player what is meant says that, and is right even if the player's state is another by then.
enum class Purpose {
  /// A person pressed it: it does what the key does, every time.
  person,
  /// Of the play key: what plays is to stop. What doesn't play stays as it is.
  pause,
  /// Of the play key: what the last `pause` has stopped is to go on, unless something plays by itself.
  resume,
};
}  // namespace mediakey

class MediaKeys {
 public:
  virtual ~MediaKeys() = default;
  /// Presses the key; a failure to deliver is silent. [main]
  virtual void press(std::int32_t key, mediakey::Purpose purpose) = 0;
};

}  // namespace quillmere
