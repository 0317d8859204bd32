// The desktop on Linux, as the windows ask it: desktop entries, the portal, the autostart folder.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Desktop.h"
#include "platform/linux/ApplicationRegistry.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// What is left alone is the user's own.
struct LinuxDesktopOptions {
  ApplicationRegistryOptions applications;
  /// D-Bus address of the portal and the desktop's services.
  std::optional<std::string> busAddress;
  /// The program that a login starts, as an absolute path; empty if it is not known.
  std::string program;
  /// What browsers start to speak with the mixer, as an absolute path, and the companion's folder; empty where unknown.
  std::string tabsProgram = {};
  std::string companionFolder = {};
  /// The dialogue for a file where there is no portal; may be null.
  std::unique_ptr<ApplicationChooser> chooser;
};

/// Whatever is missing is empty or silent. The runtime's services must outlive the desktop. [main]
[[nodiscard]] Desktop makeLinuxDesktop(const Runtime& runtime, LinuxDesktopOptions options = {});

/// Whether this program is shut in by Flatpak or Snap, where files of the desktop are not what they seem. [any]
[[nodiscard]] bool isSandboxed();

}  // namespace quillmere
