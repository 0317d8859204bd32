// Where the product's releases are announced. The text itself, unread; nobody vouches for what it says.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillmere {

/// [main]
class ReleaseFeed {
 public:
  struct Answer {
    /// Absent where nothing whole was to be had.
    std::optional<std::string> text;
    /// What went wrong then, in words for the log.
    std::string problem;
  };
  using Reply = std::function<void(Answer)>;

  virtual ~ReleaseFeed() = default;
  /// Asks once, with a limit on time and size; replies once, later, from the main loop. Not at all once this object has
  /// gone. A second question while one is open gets the same answer.
  virtual void fetch(Reply reply) = 0;
};

}  // namespace quillmere
