// What the desktop asks of the look of every program on it.
#pragma once

#include <functional>

namespace quillmere {

/// What people have chosen in the desktop's settings, most often because they need it.
struct LookWishes {
  /// Nothing is to move that need not.
  bool reducesMotion = false;
  /// Texts and edges are to stand out.
  bool wantsContrast = false;

  friend bool operator==(const LookWishes&, const LookWishes&) = default;
};

/// [main]
class DesktopLook {
 public:
  virtual ~DesktopLook() = default;
  /// Called from the main loop whenever what is wished has become known or has changed; not at all where nothing is
  /// wished. One observer; an empty function ends it.
  virtual void onWished(std::function<void(const LookWishes& wishes)> callback) = 0;
};

}  // namespace quillmere
