// Counts the calls of this program that allocate or lock, while a trap is set on the calling thread.
#pragma once

namespace quillmere {

/// Memory and lock calls are counted on this thread while one of these lives. They still do their work.
class TrappedCalls {
 public:
  TrappedCalls();
  ~TrappedCalls();
  TrappedCalls(const TrappedCalls&) = delete;
  TrappedCalls& operator=(const TrappedCalls&) = delete;

  [[nodiscard]] static int count();
  /// The name of the first function that was called; null if none was.
  [[nodiscard]] static const char* first();
};

}  // namespace quillmere
