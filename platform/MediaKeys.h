// One press of a media key, down and up.
#pragma once

#include <cstdint>

namespace quillmere {

namespace mediakey {
inline constexpr std::int32_t play = 16;
inline constexpr std::int32_t next = 17;
inline constexpr std::int32_t previous = 18;
}  // namespace mediakey

class MediaKeys {
 public:
  virtual ~MediaKeys() = default;
  /// Presses the key; a failure to deliver is silent. [main]
  virtual void press(std::int32_t key) = 0;
};

}  // namespace quillmere
