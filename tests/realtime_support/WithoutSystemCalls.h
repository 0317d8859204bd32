// Runs work in a child process that the kernel kills at its first system call.
#pragma once

#include <functional>
#include <string>

namespace quillmere {

/// How the work ended: "survived", "killed by signal N", "exit code N", or why it could not be tried.
[[nodiscard]] std::string runWithoutSystemCalls(const std::function<void()>& work);

}  // namespace quillmere
