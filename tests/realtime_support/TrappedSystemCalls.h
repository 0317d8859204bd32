// Counts the system calls of this program, while a trap is set on the calling thread, however they are made.
#pragma once

namespace quillmere {

/// While one of these lives, a system call of this thread is not made: it is counted, and gives nonsense. The first one
/// ends the trap, so that the program gets on; the next trap counts on.
class TrappedSystemCalls {
 public:
  /// Whether the kernel can do it here (Linux 5.11). For each thread once, before its first trap.
  [[nodiscard]] static bool prepareThread();

  TrappedSystemCalls();
  ~TrappedSystemCalls();
  TrappedSystemCalls(const TrappedSystemCalls&) = delete;
  TrappedSystemCalls& operator=(const TrappedSystemCalls&) = delete;

  /// Of this thread, in all its traps.
  [[nodiscard]] static int count();
  /// The number of the last one that was caught; -1 if none was.
  [[nodiscard]] static int last();
};

}  // namespace quillmere
