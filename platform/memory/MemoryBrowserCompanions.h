// Companions that come and go when a test says so.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/BrowserCompanions.h"

namespace quillmere {

/// [main]
class MemoryBrowserCompanions final : public BrowserCompanions {
 public:
  [[nodiscard]] std::vector<BrowserCompanion> connected() const override { return connected_; }
  void onChanged(std::function<void()> callback) override { changed_ = std::move(callback); }

  void set(std::vector<BrowserCompanion> connected) {
    connected_ = std::move(connected);
    if (changed_) changed_();
  }
  [[nodiscard]] bool isObserved() const { return changed_ != nullptr; }

 private:
  std::vector<BrowserCompanion> connected_;
  std::function<void()> changed_;
};

}  // namespace quillmere
