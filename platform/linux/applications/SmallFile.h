// Reading what others have put into a folder, which may be anything.
#pragma once

#include <optional>
#include <string>

namespace quillmere::applications {

/// The text of a regular file of one mebibyte at most; otherwise absent, with `problem` saying why. Waits for no pipe,
/// and ends however much comes. [any but main]
[[nodiscard]] std::optional<std::string> readSmallFile(const std::string& path, std::string& problem);

}  // namespace quillmere::applications
