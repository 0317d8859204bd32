// The small file by which a browser knows the program that its companion speaks to. Pure: [any].
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmere::tabs {

/// Under which browsers know the program.
inline constexpr std::string_view hostName = "app.quillmere.tabs";

/// `program` is an absolute path; what is no text in it is replaced.
[[nodiscard]] std::string manifestText(const std::string& program);

/// The program that a manifest lets our companion start: an absolute path. Absent where it lets it start none.
[[nodiscard]] std::optional<std::string> programInManifest(std::string_view text);

}  // namespace quillmere::tabs
