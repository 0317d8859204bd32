// A desktop whose wishes a test makes by hand.
#pragma once

#include <functional>
#include <utility>

#include "platform/DesktopLook.h"

namespace quillmere {

/// [main]
class MemoryDesktopLook final : public DesktopLook {
 public:
  void onWished(std::function<void(const LookWishes&)> callback) override { wished_ = std::move(callback); }

  void wish(const LookWishes& wishes) const {
    if (wished_) wished_(wishes);
  }

 private:
  std::function<void(const LookWishes&)> wished_;
};

}  // namespace quillmere
