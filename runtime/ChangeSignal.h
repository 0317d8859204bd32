// Tells that what somebody answers may have become another answer, so that nobody has to ask again in vain.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "runtime/Clocks.h"
#include "runtime/Observable.h"

namespace quillmere {

/// Says more often than need be that there is something new, and never too seldom. [any]
class ChangeSignal {
 public:
  /// Of somebody who tells every change.
  ChangeSignal() = default;
  ChangeSignal(const ChangeSignal&) = delete;
  ChangeSignal& operator=(const ChangeSignal&) = delete;

  /// Of somebody who can't tell: always stale, never raised.
  [[nodiscard]] static const ChangeSignal& absent();

  /// From here on another answer may be given. Whoever follows is told before this returns.
  void raise();
  /// How often it was raised so far.
  [[nodiscard]] std::uint64_t raises() const;

  /// From that time on the last answer is worth nothing without another question, raised or not. A time that is set
  /// counts for those who begin to wait after it; absent, as at first: never.
  void setStaleAt(std::optional<MonotonicTime> time);
  [[nodiscard]] std::optional<MonotonicTime> staleAt() const;

  /// Calls `told` at each raise, on the thread that raises, until the subscription ends; a call that is under way then
  /// comes to its end. `told` is short and leaves this signal alone. The subscription may outlive the signal.
  [[nodiscard]] Subscription follow(std::function<void()> told) const;

 private:
  mutable std::mutex mutex_;
  std::uint64_t raises_ = 0;
  std::optional<MonotonicTime> staleAt_;
  mutable std::vector<std::weak_ptr<std::function<void()>>> followers_;
};

}  // namespace quillmere
