// A wish to see the program, as it comes from elsewhere: another start of it, the panel, the desktop.
#pragma once

#include <optional>
#include <string>

namespace quillmere {

struct ActivationRequest {
  /// The section of the main window that is to show, by its name; absent: the one that shows.
  std::optional<std::string> section;
  /// What lets a window come to the front on desktops that ask for a reason; empty where there is none.
  std::string activationToken;

  friend bool operator==(const ActivationRequest&, const ActivationRequest&) = default;
};

}  // namespace quillmere
