// Reading /proc.
#include "applications/ProcessReader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <memory>
#include <utility>

namespace quillmere::applications {
namespace {

constexpr std::size_t maxFileBytes = std::size_t{64} * 1024;

/// The start of a file, at most `limit` bytes; empty if it cannot be read. Never waits: what is no plain file is left.
std::string readStart(const std::string& path, std::size_t limit) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (file < 0) return {};
  struct stat facts{};
  std::string text;
  if (::fstat(file, &facts) == 0 && S_ISREG(facts.st_mode)) {
    text.resize(limit);
    std::size_t length = 0;
    while (length < limit) {
      const auto count = ::read(file, text.data() + length, limit - length);
      if (count <= 0) break;
      length += static_cast<std::size_t>(count);
    }
    text.resize(length);
  }
  ::close(file);
  return text;
}

}  // namespace

ProcessReader::ProcessReader(std::string procRoot, std::uint32_t userID)
    : procRoot_(std::move(procRoot)), userID_(userID) {}

std::vector<ProcessReader::Listed> ProcessReader::list() const {
  std::vector<Listed> processes;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(procRoot_.c_str()), ::closedir);
  if (folder == nullptr) return processes;
  while (const dirent* entry = ::readdir(folder.get())) {
    const std::string_view name(static_cast<const char*>(entry->d_name));
    std::int32_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error == std::errc{} && end == name.data() + name.size() && pid > 0) processes.push_back({pid, entry->d_ino});
  }
  return processes;
}

std::string ProcessReader::sign() const {
  // "0.20 0.18 0.12 1/80 11206": who comes has a new number, the last one that was given; who goes is missing in the
  // sum.
  const auto text = readStart(procRoot_ + "/loadavg", 128);
  const auto slash = text.find('/');
  return slash == std::string::npos ? std::string() : text.substr(slash + 1);
}

std::optional<ProcessFacts> ProcessReader::read(std::int32_t pid) const {
  if (pid <= 0) return std::nullopt;
  const auto folder = procRoot_ + "/" + std::to_string(pid);
  struct stat facts{};
  if (::stat(folder.c_str(), &facts) != 0 || facts.st_uid != userID_) return std::nullopt;
  ProcessFacts process;
  process.executable = executableOf(pid);
  if (process.executable.empty()) return std::nullopt;
  process.words = wordsOfCommandLine(readStart(folder + "/cmdline", maxFileBytes));
  process.shortName = readStart(folder + "/comm", 64);
  while (process.shortName.ends_with('\n')) process.shortName.pop_back();
  process.cgroup = readStart(folder + "/cgroup", maxFileBytes);
  process.flatpakID = flatpakIDOfInfo(readStart(folder + "/root/.flatpak-info", maxFileBytes));
  return process;
}

std::string ProcessReader::executableOf(std::int32_t pid) const {
  std::array<char, 4096> target{};
  const auto link = procRoot_ + "/" + std::to_string(pid) + "/exe";
  const auto length = ::readlink(link.c_str(), target.data(), target.size());
  if (length <= 0) return {};
  std::string path(target.data(), static_cast<std::size_t>(length));
  // What an update replaced runs on under its old name.
  constexpr std::string_view deleted = " (deleted)";
  if (path.ends_with(deleted)) path.resize(path.size() - deleted.size());
  return path;
}

std::vector<std::string> wordsOfCommandLine(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const auto end = text.find('\0');
    words.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  // One line in one word says nothing that the executable does not.
  if (words.size() == 1 && words[0].find(' ') != std::string::npos) words.clear();
  return words;
}

std::string flatpakIDOfInfo(std::string_view text) {
  bool inGroup = false;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    if (line.starts_with('[')) inGroup = line == "[Application]";
    if (inGroup && line.starts_with("name=")) return std::string(line.substr(5));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return {};
}

}  // namespace quillmere::applications
