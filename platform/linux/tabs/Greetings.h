// The few things that companion, host program and mixer say to each other beside lists of tabs. All are JSON objects;
// what one of them doesn't know it lets pass, so that unlike versions understand what they have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillmere::tabs {

/// Bytes of a version.
inline constexpr std::size_t longestVersion = 64;

/// {"companion": version}, {"host": version}, {"mixer": version}: each one's first word. [any]
[[nodiscard]] std::string greeting(std::string_view who, std::string_view version);
/// The version in the greeting of `who`; absent in what is none. [any]
[[nodiscard]] std::optional<std::string> readGreeting(std::string_view who, const std::string& message);

/// Tells the companion whether anybody listens. After a yes it tells everything anew. [any]
[[nodiscard]] std::string listenMessage(bool isHeard);

/// Brings a window and a tab to the front, by the browser's own numbers; what is absent is not there any more. [any]
[[nodiscard]] std::string activateMessage(std::optional<std::int64_t> window, std::optional<std::int64_t> tab);

}  // namespace quillmere::tabs
