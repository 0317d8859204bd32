// Where the programs are that belong to this one.
#pragma once

#include <string>
#include <vector>

namespace quillmere {

/// The first of these files that exists, relative to the running executable's folder, as an absolute path; empty if
/// none does. [any]
[[nodiscard]] std::string programBeside(const std::vector<std::string>& places);

}  // namespace quillmere
