// The machine on Linux: PipeWire, SQLite, desktop entries and MPRIS behind the ports.
#pragma once

#include <optional>
#include <string>

#include "platform/Machine.h"
#include "platform/linux/ApplicationRegistry.h"
#include "platform/linux/LinuxReleaseFeed.h"
#include "platform/linux/PipeWireAudioHardware.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// Where the machine is to be found; what is left alone is the user's own.
struct LinuxMachineOptions {
  PipeWireOptions audio;
  ApplicationRegistryOptions applications;
  /// The settings database.
  std::optional<std::string> defaultsFile;
  /// D-Bus address of the media players.
  std::optional<std::string> busAddress;
  /// Where browsers' host programs find this one; absent means XDG_RUNTIME_DIR.
  std::optional<std::string> runtimeFolder;
  /// Absent for a machine without a release feed.
  std::optional<LinuxReleaseFeedOptions> releaseFeed;
};

/// Whatever is missing on the machine is empty or silent, and comes when it comes; a missing part is no failure.
/// The runtime's services must outlive the machine. [main]
[[nodiscard]] Machine makeLinuxMachine(const Runtime& runtime, LinuxMachineOptions options = {});

}  // namespace quillmere
