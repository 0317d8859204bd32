// A queue that runs one piece of work at a time, in order. Waiting costs nothing.
#pragma once

#include <memory>
#include <string>

#include "runtime/Executor.h"

namespace quillmere {

class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  /// Queues `work` and returns. [any]
  virtual void async(Work work) = 0;
  /// Queues `work` once `delay` of monotonic time has passed; it is dropped if the queue ends before. [any]
  virtual void asyncAfter(Duration delay, Work work) = 0;
  /// Waits for all that was queued before, runs `work` as the queue and returns; where the queue is free, on the
  /// calling thread. Stops the process when called on the queue itself. `work` throws nothing. [any but the queue]
  virtual void sync(const Work& work) = 0;
  [[nodiscard]] virtual bool isCurrent() const = 0;
  /// Stops the process when called off the queue; in every build.
  void preconditionOnQueue() const;
};

/// A serial queue on a thread of its own. The destructor finishes what is queued, drops what is
/// not due yet, then ends the thread.
std::unique_ptr<SerialQueue> makeThreadSerialQueue(std::string label);

}  // namespace quillmere
