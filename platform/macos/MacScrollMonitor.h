// Sees the scrolls of this program before its windows do, with the distance as the system tells it.
#pragma once

#include <memory>

#include "platform/macos/pure/ScrollCatch.h"

namespace quillmere {

/// [main] From its making to its end.
class MacScrollMonitor {
 public:
  explicit MacScrollMonitor(macos::ScrollCatch listener);
  ~MacScrollMonitor();
  MacScrollMonitor(const MacScrollMonitor&) = delete;
  MacScrollMonitor& operator=(const MacScrollMonitor&) = delete;

  /// The window of an NSView*, as ScrollCatch names windows; null while it is in none.
  [[nodiscard]] static const void* windowOf(void* view);

 private:
  struct Monitor;
  std::unique_ptr<Monitor> monitor_;
};

}  // namespace quillmere
