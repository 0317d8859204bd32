// The symbolic threads that comments name, and the checks behind them.
//
//   [main]        the main executor: AppState, automations, views, listeners
//   [engine]      the engine's serial queue
//   [audio]       the device's real-time thread: no lock, no heap, no log, no system call
//   [background]  the pool: polls, merges, scans
//   [any]         whichever thread calls
//
// Checks run in debug and sanitizer builds (QUILLMERE_THREAD_CHECKS) and cost nothing otherwise.
#pragma once

namespace quillmere {

/// Stops the process with `message` on standard error. For programming errors only. [any]
[[noreturn]] void preconditionFailure(const char* message);

}  // namespace quillmere

/// Marks a function that runs on [audio]. Keep these in files of their own.
#define QUILLMERE_REALTIME

#ifdef QUILLMERE_THREAD_CHECKS
#define QUILLMERE_CHECK_ON(executorOrQueue, what)                               \
  do {                                                                          \
    if (!(executorOrQueue).isCurrent()) ::quillmere::preconditionFailure(what); \
  } while (false)
#else
#define QUILLMERE_CHECK_ON(executorOrQueue, what) static_cast<void>(0)
#endif
