// Small files below /proc.
#include "tabs/BrowserOfHost.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>

namespace quillmere::tabs {

namespace {

/// What the kernel adds to the name of a file that is there no more, as after an update of a running browser.
constexpr std::string_view gone = " (deleted)";

}  // namespace

std::int32_t parentInStat(std::string_view text) {
  // "pid (name) state parent ..."; the name may hold anything.
  const auto end = text.rfind(')');
  if (end == std::string_view::npos) return 0;
  std::istringstream rest{std::string(text.substr(end + 1))};
  char state = 0;
  std::int32_t parent = 0;
  return rest >> state >> parent ? std::max(parent, 0) : 0;
}

std::int32_t parentOf(const std::string& procRoot, std::int32_t pid) {
  std::ifstream file(procRoot + '/' + std::to_string(pid) + "/stat");
  std::string line;
  std::getline(file, line, '\0');
  return parentInStat(line);
}

std::string programOf(const std::string& procRoot, std::int32_t pid) {
  std::error_code problem;
  auto name = std::filesystem::read_symlink(procRoot + '/' + std::to_string(pid) + "/exe", problem).filename().string();
  if (name.ends_with(gone)) name.erase(name.size() - gone.size());
  return name;
}

}  // namespace quillmere::tabs
