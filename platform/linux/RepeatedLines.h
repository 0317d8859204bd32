// Lines of a log that say again what was said a moment ago.
#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <string>
#include <string_view>

#include "runtime/Clocks.h"

namespace quillmere {

/// What a poll finds is told each time, and mostly it is what the last one found. [any but audio]
class RepeatedLines {
 public:
  /// A line that comes back sooner than this since it came last is a repetition.
  static constexpr Duration memory = std::chrono::minutes(1);
  /// So many different lines are remembered, the latest ones.
  static constexpr std::size_t most = 32;

  /// Whether this is no repetition; the line counts as seen now.
  bool isNews(std::string_view category, std::string_view message, MonotonicTime now);

 private:
  struct Seen {
    std::string line;
    MonotonicTime at;
  };

  std::mutex mutex_;
  /// The latest first. Under the mutex.
  std::list<Seen> seen_;
};

}  // namespace quillmere
