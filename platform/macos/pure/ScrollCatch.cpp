// Window, pointer, use.
#include "platform/macos/pure/ScrollCatch.h"

namespace quillmere::macos {

bool takesScroll(const ScrollCatch& listener, const void* eventWindow, double delta) {
  const void* window = listener.window();
  if (window == nullptr || eventWindow == nullptr || window != eventWindow) return false;
  if (!listener.isActive()) return false;
  return listener.onScroll(delta);
}

}  // namespace quillmere::macos
