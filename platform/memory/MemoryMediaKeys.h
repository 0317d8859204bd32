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
  void press(std::int32_t key, mediakey::Purpose purpose) override {
    pressed_.push_back(key);
    purposes_.push_back(purpose);
    if (onPress_) onPress_(key);
  }

  /// Called inside each press, after it was recorded.
  void setOnPress(std::function<void(std::int32_t key)> onPress) { onPress_ = std::move(onPress); }
  /// Every key in the order of the presses.
  [[nodiscard]] const std::vector<std::int32_t>& pressed() const { return pressed_; }
  /// What each of them was pressed for.
  [[nodiscard]] const std::vector<mediakey::Purpose>& purposes() const { return purposes_; }
  void clear() {
    pressed_.clear();
    purposes_.clear();
  }

 private:
  std::vector<std::int32_t> pressed_;
  std::vector<mediakey::Purpose> purposes_;
  std::function<void(std::int32_t)> onPress_;
};

}  // namespace quillmere
