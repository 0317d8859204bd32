// The symbolic threads that comments name, and the checks behind them.
//
//   [main]        the main executor: AppState, automations, views, listeners
//   [engine]      the engine's serial queue
//   [audio]       the device's real-time thread: no lock, no heap, no log, no system call
//   [background]  the pool: polls, merges, scans
//   [any]         whichever thread calls
//
// Below platform/linux/ there are two more:
//
//   [loop]        the PipeWire host's loop: its own thread, or another one while that holds the loop (LoopLock)
//   [host]        the host's loop, one thread: the bus, sockets, signals, the display's end; nothing there waits
//
// A tag in the comment of a function is the function's; of a class, its public members' that have none of their own; at
// the head of a file, everybody's in it. "[any but main]" leaves a thread out.
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
