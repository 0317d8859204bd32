// The loop of the main thread, whoever's it is.
#pragma once

#include "runtime/Executor.h"

namespace quillmere {

/// Made, run and destroyed on one thread, which is [main].
class MainLoop {
 public:
  virtual ~MainLoop() = default;
  /// The same one at any time. [any]
  [[nodiscard]] virtual Executor& executor() = 0;
  /// Runs what is posted until stop(). Not to be called twice. [main]
  virtual void run() = 0;
  /// Ends run(), and drops what is queued. [any]
  virtual void stop() = 0;
};

}  // namespace quillmere
