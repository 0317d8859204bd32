// Where the system's settings show who may do what.
#pragma once

#include <string>
#include <string_view>

namespace quillmere::macos {

/// The address of the pane of privacy and security, at one of its lists: "Privacy_Accessibility". [any]
[[nodiscard]] std::string settingsAddress(std::string_view anchor);

}  // namespace quillmere::macos
