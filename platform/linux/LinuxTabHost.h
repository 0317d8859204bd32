// The program that a browser starts to speak with: it hands what the companion tells to the mixer, and the mixer's
// requests back.
#pragma once

#include <chrono>
#include <string>

#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {

struct LinuxTabHostOptions {
  /// Ends of the browser's two pipes.
  int input = 0;
  int output = 1;
  /// The user's runtime folder, where the mixer's socket is.
  std::string runtimeFolder;
  std::string version;
  /// How long the companion may take for its first words, and for one message once it has begun it.
  Duration patience = std::chrono::seconds(10);
  /// The pause after a mixer that has closed the line while it runs; doubled each time, at most 64 times itself.
  Duration pause = std::chrono::seconds(1);
};

/// Runs until the browser closes its end: 0; or sends what is no message: 1, with one line in the log. A mixer may come
/// and go meanwhile; while there is none, the companion is told to be quiet, and nothing here wakes up. Makes the two
/// pipes non-blocking. [any]
[[nodiscard]] int runTabHost(const LinuxTabHostOptions& options, Clocks& clocks, LogSink& log);

/// The user's runtime folder; empty where the session has none. [any]
[[nodiscard]] std::string tabHostRuntimeFolder();

}  // namespace quillmere
