// A process that this one has started.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <mutex>
#include <optional>

namespace quillmere {

/// A child's end makes no noise that one could wait for on every kernel and in every sandbox: it is looked for, by one
/// thread at a time, every so often.
inline constexpr auto childGlance = std::chrono::milliseconds(10);

/// [any] Looked for by one thread at a time.
class Child {
 public:
  explicit Child(pid_t pid) : pid_(pid) {}

  /// Ends it at once.
  void kill();
  /// Its status, once: absent while it runs, and after that. Doesn't wait.
  std::optional<int> collect();
  /// Whether it may still run, as collect() has last seen it; for the thread that looks.
  [[nodiscard]] bool isThere() const { return pid_ != 0; }
  /// Waits for its end, and brings it about after that time. [any but host]
  void waitForEnd(std::chrono::milliseconds patience);

 private:
  std::mutex mutex_;
  /// Changed under the mutex by the thread that looks, and read by it without.
  pid_t pid_;
};

}  // namespace quillmere
