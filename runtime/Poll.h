// The body of a stream that looks at the same thing again and again.
#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "runtime/ChangeWatch.h"
#include "runtime/Stream.h"

namespace quillmere {

/// Tells what `look` finds, at once and then each period, changed or not. To a consumer that wants changes only it
/// tells at those same times, and leaves out the looks at which nothing that `watch` watches can have anything new, and
/// what a look that nobody called for finds once more. `look` depends on nothing else and is called on the task's
/// executor; the period begins when it has ended, be it at once or, where it is an Async, later.
template <typename T, typename Look>
Async<void> poll(TaskContext& task, typename Stream<T>::Writer& writer, Duration period, ChangeWatch watch, Look look) {
  watch.add(writer.wishes());
  std::optional<T> told;
  while (!task.isCancelled()) {
    const bool isCalledFor = watch.beginLook();
    std::optional<T> found;
    if constexpr (std::is_same_v<std::invoke_result_t<Look&>, Async<T>>) {
      found.emplace(co_await look());
    } else {
      found.emplace(look());
    }
    if (isCalledFor || writer.pace() == Pace::everyPeriod || found != told) {
      told = *found;
      writer.yield(*std::move(found));
    }
    if (writer.pace() == Pace::everyPeriod) {
      co_await task.sleep(period);
    } else {
      co_await sleepUntilChanged(task, period, watch);
    }
  }
}

}  // namespace quillmere
