// The clear windows of all screens, as long as the popover is shown.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "windows/Backdrop.h"

namespace quillmere {

/// [main] throughout.
class Backdrops {
 public:
  Backdrops() = default;
  ~Backdrops() { clear(); }
  Backdrops(const Backdrops&) = delete;
  Backdrops& operator=(const Backdrops&) = delete;

  /// One for each screen, each prepared by the caller before it is shown. Replaces what was there.
  void cover(const std::function<void(Backdrop& backdrop, QScreen& screen)>& prepare);
  /// One of them may be the caller.
  void clear();

 private:
  std::vector<std::unique_ptr<Backdrop>> backdrops_;
};

}  // namespace quillmere
