// The address is the pane's, and then the list's name as it stands.
#include "platform/macos/pure/SettingsAddress.h"

namespace quillmere::macos {

std::string settingsAddress(std::string_view anchor) {
  return "x-apple.systempreferences:com.apple.preference.security?" + std::string(anchor);
}

}  // namespace quillmere::macos
