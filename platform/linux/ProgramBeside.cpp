// Looking beside the executable.
#include "platform/linux/ProgramBeside.h"

#include <filesystem>
#include <system_error>

namespace quillmere {

std::string programBeside(const std::vector<std::string>& places) {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (const auto& place : places) {
    auto file = (folder / place).lexically_normal();
    if (std::filesystem::is_regular_file(file, error)) return file.string();
  }
  return {};
}

}  // namespace quillmere
