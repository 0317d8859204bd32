// What the build knows of the product: its version, and where its makers are found. [any]
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

/// This program's version, "0.0.0" if the build gave none.
[[nodiscard]] std::string_view appVersion();
/// The same where the build gave one, else empty.
[[nodiscard]] std::string_view bundleVersion();
/// Which build of that version this is; empty if the build didn't say.
[[nodiscard]] std::string_view buildNumber();
/// The product's web address, without a trailing slash.
[[nodiscard]] std::string_view webAddress();
/// Where the newest version is to be had.
[[nodiscard]] std::string downloadAddress();
/// The mailbox for feedback, without "mailto:".
[[nodiscard]] std::string_view feedbackMailbox();

}  // namespace quillmere
