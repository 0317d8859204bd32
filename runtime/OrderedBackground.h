// Short background work that keeps the order in which it was posted, on a pool that promises none.
// The last position of a slider must also be the last that the engine hears.
#pragma once

#include <deque>
#include <memory>
#include <mutex>

#include "runtime/Executor.h"

namespace quillmere {

class OrderedBackground : public std::enable_shared_from_this<OrderedBackground> {
 public:
  /// `background` outlives what is posted here.
  explicit OrderedBackground(Executor& background) : background_(background) {}
  /// Runs `work` on the background executor after all that was posted before it. [any]
  void post(Work work);

 private:
  void drain();

  Executor& background_;
  std::mutex mutex_;
  std::deque<Work> waiting_;
  bool draining_ = false;
};

}  // namespace quillmere
