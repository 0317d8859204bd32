// Media keys that only remember what was pressed.
// A test may hang a player's behaviour on a press.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/MediaKeys.h"

namespace quillmere {

/// [main]
class MemoryMediaKeys final : public MediaKeys {
 public:
  void press(std::int32_t key) override {
    pressed_.push_back(key);
    if (onPress_) onPress_(key);
  }

  /// Called inside each press, after it was recorded.
  void setOnPress(std::function<void(std::int32_t key)> onPress) { onPress_ = std::move(onPress); }
  /// Every key in the order of the presses.
  [[nodiscard]] const std::vector<std::int32_t>& pressed() const { return pressed_; }
  void clear() { pressed_.clear(); }

 private:
  std::vector<std::int32_t> pressed_;
  std::function<void(std::int32_t)> onPress_;
};

}  // namespace quillmere
