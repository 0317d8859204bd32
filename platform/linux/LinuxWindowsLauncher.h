// Starts the program that draws the windows, and stands by until it has ended.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Channel.h"
#include "runtime/Logger.h"

namespace quillmere {

/// [main]
class LinuxWindowsLauncher final : public WindowsLauncher {
 public:
  /// The first of these files that can be opened, relative to the running executable's folder, is the program. It is
  /// opened here and now: after an update on the disk a running program goes on with the windows it was built with.
  LinuxWindowsLauncher(const std::vector<std::string>& places, LogSink& log);
  ~LinuxWindowsLauncher() override;
  LinuxWindowsLauncher(const LinuxWindowsLauncher&) = delete;
  LinuxWindowsLauncher& operator=(const LinuxWindowsLauncher&) = delete;

  /// Whether there is a program to start.
  [[nodiscard]] bool isComplete() const { return program_ >= 0; }
  void prepare() override;
  [[nodiscard]] std::unique_ptr<Channel> launch(ChannelEvents events) override;

 private:
  struct Started {
    /// This end of the line.
    int socket = -1;
    pid_t pid = 0;
  };
  [[nodiscard]] std::optional<Started> start();

  int program_ = -1;
  std::optional<Started> prepared_;
  Logger log_;
};

/// The other side: the channel that the launcher has left for this process, which may be opened once; null if this
/// process was started by somebody else. [any]
[[nodiscard]] std::unique_ptr<Channel> openInheritedChannel(ChannelEvents events);

}  // namespace quillmere
