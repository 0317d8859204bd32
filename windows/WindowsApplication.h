// The program that draws the windows of another: its state, its icons and its orders come over a channel.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Channel.h"
#include "platform/Desktop.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// What a host gives the program.
struct WindowsHost {
  std::function<std::unique_ptr<LogSink>()> makeLogSink;
  /// The languages that texts are asked for in, best first: "de_AT". Asked at the start.
  std::function<std::vector<std::string>()> languages;
  /// Null where nobody has started this process for its windows.
  std::function<std::unique_ptr<Channel>(ChannelEvents events)> openChannel;
  /// Asked with the first window. `dialogue` is the toolkit's own, for where the desktop has none.
  std::function<Desktop(const Runtime& runtime, std::unique_ptr<ApplicationChooser> dialogue)> makeDesktop;
};

/// Runs until the other end closes the channel; returns the exit code. Called once, on the main thread.
int runWindows(int argc, char** argv, const WindowsHost& host);

}  // namespace quillmere
