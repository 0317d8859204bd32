// What is chosen in the system's settings for displays, under accessibility.
#pragma once

#include <functional>
#include <memory>

#include "platform/DesktopLook.h"

namespace quillmere {

/// [main]
class MacDesktopLook final : public DesktopLook {
 public:
  MacDesktopLook();
  ~MacDesktopLook() override;
  MacDesktopLook(const MacDesktopLook&) = delete;
  MacDesktopLook& operator=(const MacDesktopLook&) = delete;

  void onWished(std::function<void(const LookWishes& wishes)> callback) override;

 private:
  struct Watch;
  std::shared_ptr<Watch> watch_;
};

}  // namespace quillmere
