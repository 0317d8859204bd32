// The process that has started a host program: its browser.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillmere::tabs {

/// The parent in the text of /proc/PID/stat; 0 where there is none. Pure: [any].
[[nodiscard]] std::int32_t parentInStat(std::string_view text);

/// The parent of a process; 0 where there is none to be found. [any]
[[nodiscard]] std::int32_t parentOf(const std::string& procRoot, std::int32_t pid);

/// The file that a process runs, without its folder; empty where it can't be read. [any]
[[nodiscard]] std::string programOf(const std::string& procRoot, std::int32_t pid);

}  // namespace quillmere::tabs
