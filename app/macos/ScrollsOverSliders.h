// Scrolls over the program's sliders, with the distance as the system tells it.
#pragma once

#include "platform/macos/MacScrollMonitor.h"

namespace quillmere {

/// [main] From its making to its end.
class ScrollsOverSliders {
 public:
  ScrollsOverSliders();

 private:
  MacScrollMonitor monitor_;
};

}  // namespace quillmere
