// Reading and indexing desktop entries.
#include "applications/DesktopEntries.h"

#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <tuple>
#include <utility>

#include "applications/SmallFile.h"
#include "text/CleanText.h"

namespace quillmere::applications {
namespace {

namespace fs = std::filesystem;

constexpr int maxDepth = 8;
constexpr std::size_t maxEntries = 10000;

std::string folded(std::string_view text) {
  char* lower = g_ascii_strdown(text.data(), static_cast<gssize>(text.size()));
  std::string copy(lower);
  g_free(lower);
  return copy;
}

/// Folders that belong to no application in particular.
bool isCommonFolder(std::string_view folder) {
  constexpr std::array<std::string_view, 13> common{"bin",       "sbin",    "lib",         "lib32", "lib64",
                                                    "libexec",   "games",   "scripts",     "tmp",   "share",
                                                    "Downloads", "Desktop", "Applications"};
  const auto name = fileNameOf(folder);
  return name.empty() || folder == g_get_home_dir() || std::ranges::find(common, name) != common.end() ||
         name.ends_with("-linux-gnu");
}

/// The file that a program's word stands for, links followed; empty if there is none.
std::string resolved(const std::string& word, const std::string& searchPath) {
  std::error_code error;
  if (word.starts_with('/')) {
    const auto file = fs::canonical(word, error);
    return error ? word : file.string();
  }
  if (word.empty() || word.find('/') != std::string::npos) return {};
  std::string_view rest = searchPath;
  while (!rest.empty()) {
    const auto end = rest.find(':');
    const auto folder = rest.substr(0, end);
    if (!folder.empty()) {
      const auto file = fs::canonical(fs::path(folder) / word, error);
      if (!error) return file.string();
    }
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return {};
}

std::string idOf(const fs::path& file, const fs::path& folder) {
  auto id = file.lexically_relative(folder).generic_string();
  std::ranges::replace(id, '/', '-');
  id.resize(id.size() - std::string_view(".desktop").size());
  return id;
}

/// What was left out of one reading, in one line however much it is.
class Omissions {
 public:
  void add(const fs::path& file, const std::string& problem) {
    if (++count_ > maxNamed) return;
    if (!text_.empty()) text_ += "; ";
    text_ += cleanText(file.string(), maxPathBytes) + ": " + cleanText(problem, maxProblemBytes);
  }
  void tell(const DesktopEntries::Report& report) const {
    if (count_ == 0) return;
    auto line = std::to_string(count_) + (count_ == 1 ? " desktop entry" : " desktop entries") + " left out: " + text_;
    if (count_ > maxNamed) line += "; and " + std::to_string(count_ - maxNamed) + " more";
    report(line);
  }

 private:
  static constexpr std::size_t maxNamed = 8;
  static constexpr std::size_t maxPathBytes = 200;
  static constexpr std::size_t maxProblemBytes = 120;
  std::size_t count_ = 0;
  std::string text_;
};

class Reader {
 public:
  explicit Reader(const DesktopEntries::Places& places) : places_(places) {}

  void readFolder(const fs::path& folder) {
    std::vector<fs::path> files;
    collect(folder, 0, files);
    std::ranges::sort(files);
    for (const auto& file : files) readFile(file, idOf(file, folder));
  }

  /// Absent for what is no application, is deleted, or is broken; the last is told in `problem`.
  std::optional<DesktopEntry> entryOf(const fs::path& file, const std::string& id, std::string& problem) const {
    const auto text = readSmallFile(file.string(), problem);
    if (!text) return std::nullopt;
    auto entry = parseDesktopEntry(id, *text, problem);
    if (!entry) {
      if (problem == "not an application") problem.clear();
      return std::nullopt;
    }
    entry->path = file.string();
    entry->isListed = entry->isVisible && isMeantFor(entry->onlyShowIn, entry->notShowIn, places_.desktops) &&
                      (entry->tryExec.empty() || isProgram(entry->tryExec, places_.searchPath));
    return entry;
  }

  std::vector<DesktopEntry> entries;
  Omissions omissions;

 private:
  /// Every desktop file below a folder. A folder that is reached a second time, through a link, has been looked at.
  void collect(const fs::path& folder, int depth, std::vector<fs::path>& files) {
    struct stat facts{};
    if (::stat(folder.c_str(), &facts) != 0) return;
    if (!visited_.insert({facts.st_dev, facts.st_ino}).second) return;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
      if (files.size() >= maxEntries) return;
      if (at->path().extension() == ".desktop") {
        files.push_back(at->path());
        continue;
      }
      std::error_code unknown;
      if (depth < maxDepth && at->is_directory(unknown)) collect(at->path(), depth + 1, files);
    }
  }

  void readFile(const fs::path& file, const std::string& id) {
    if (seen_.contains(id)) return;
    std::string problem;
    auto entry = entryOf(file, id, problem);
    if (!problem.empty()) omissions.add(file, problem);
    if (!entry) return;
    seen_.insert(id);
    if (!entry->isDeleted) entries.push_back(std::move(*entry));
  }

  const DesktopEntries::Places& places_;
  std::set<std::string> seen_;
  std::set<std::pair<dev_t, ino_t>> visited_;
};

}  // namespace

std::vector<std::string> dataFolders() {
  std::vector<std::string> folders;
  const auto add = [&](const std::string& folder) {
    if (folder.starts_with('/') && std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
  };
  const auto variable = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string(value == nullptr ? "" : value);
  };
  const auto home = variable("HOME");
  auto userFolder = variable("XDG_DATA_HOME");
  if (userFolder.empty() && !home.empty()) userFolder = home + "/.local/share";
  add(userFolder);
  auto systemFolders = variable("XDG_DATA_DIRS");
  if (systemFolders.empty()) systemFolders = "/usr/local/share:/usr/share";
  std::string_view rest = systemFolders;
  while (!rest.empty()) {
    const auto end = rest.find(':');
    auto folder = std::string(rest.substr(0, end));
    while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
    add(folder);
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  if (!userFolder.empty()) add(userFolder + "/flatpak/exports/share");
  add("/var/lib/flatpak/exports/share");
  add("/var/lib/snapd/desktop");
  return folders;
}

std::vector<std::string> currentDesktops() {
  const char* names = std::getenv("XDG_CURRENT_DESKTOP");
  std::vector<std::string> desktops;
  std::string_view rest(names == nullptr ? "" : names);
  while (!rest.empty()) {
    const auto end = std::min(rest.find(':'), rest.size());
    if (end != 0) desktops.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return desktops;
}

bool isMeantFor(const std::vector<std::string>& onlyShowIn, const std::vector<std::string>& notShowIn,
                const std::vector<std::string>& desktops) {
  // The session's first name that an entry mentions decides.
  for (const auto& desktop : desktops) {
    if (std::ranges::find(onlyShowIn, desktop) != onlyShowIn.end()) return true;
    if (std::ranges::find(notShowIn, desktop) != notShowIn.end()) return false;
  }
  return onlyShowIn.empty();
}

bool isProgram(const std::string& program, const std::string& searchPath) {
  const auto file = resolved(program, searchPath);
  struct stat facts{};
  return !file.empty() && ::stat(file.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
         ::access(file.c_str(), X_OK) == 0;
}

std::shared_ptr<const DesktopEntries> DesktopEntries::read(const Places& places, const Report& report) {
  Reader reader(places);
  for (const auto& folder : places.folders) reader.readFolder(fs::path(folder) / "applications");
  reader.omissions.tell(report);
  return of(std::move(reader.entries), places.searchPath);
}

std::shared_ptr<const DesktopEntries> DesktopEntries::of(std::vector<DesktopEntry> entries,
                                                         const std::string& searchPath) {
  auto indexed = std::make_shared<DesktopEntries>();
  indexed->entries_ = std::move(entries);
  indexed->index(searchPath);
  return indexed;
}

std::optional<DesktopEntry> DesktopEntries::readFile(const Places& places, const std::string& path) {
  if (!path.ends_with(".desktop")) return std::nullopt;
  const fs::path file(path);
  auto id = idOf(file, file.parent_path());
  for (const auto& folder : places.folders) {
    const auto applications = fs::path(folder) / "applications";
    const auto below = file.lexically_relative(applications);
    if (below.empty() || *below.begin() == "..") continue;
    id = idOf(file, applications);
    break;
  }
  std::string problem;
  auto entry = Reader(places).entryOf(file, id, problem);
  if (!entry || entry->isDeleted) return std::nullopt;
  return entry;
}

void DesktopEntries::index(const std::string& searchPath) {
  // The best entry of a key comes first: people can see it, it starts the plain program, its id is the program's name.
  std::vector<std::size_t> order(entries_.size());
  for (std::size_t at = 0; at < order.size(); ++at) order[at] = at;
  const auto rank = [this](std::size_t at) {
    const auto& entry = entries_[at];
    return std::tuple(!entry.isVisible, entry.wordCount, folded(entry.id) != folded(entry.program.name),
                      entry.id.size(), std::string_view(entry.id));
  };
  std::ranges::sort(order, [&](std::size_t left, std::size_t right) { return rank(left) < rank(right); });
  for (const auto at : order) {
    const auto& entry = entries_[at];
    byID_.try_emplace(entry.id, at);
    byFoldedID_.try_emplace(folded(entry.id), at);
    if (!entry.sandboxID.empty()) bySandboxID_.try_emplace(entry.sandboxID, at);
    if (!entry.startupWMClass.empty()) byWindowClass_.try_emplace(folded(entry.startupWMClass), at);
    // What runs in a sandbox or in a terminal says nothing of the processes outside.
    if (entry.program.isAnonymous || !entry.sandboxID.empty()) continue;
    byName_.try_emplace(entry.program.name, at);
    const auto file = resolved(entry.program.path, searchPath);
    if (file.empty()) continue;
    byFile_.try_emplace(file, at);
    const auto folder = file.substr(0, file.rfind('/'));
    if (!isCommonFolder(folder)) byFolder_.try_emplace(folder, at);
  }
}

const DesktopEntry* DesktopEntries::find(const Index& index, std::string_view key) const {
  const auto found = index.find(key);
  return found == index.end() ? nullptr : &entries_[found->second];
}

const DesktopEntry* DesktopEntries::byID(std::string_view id) const {
  if (const auto* exact = find(byID_, id)) return exact;
  return find(byFoldedID_, folded(id));
}

const DesktopEntry* DesktopEntries::bySandboxID(std::string_view id) const { return find(bySandboxID_, id); }

const DesktopEntry* DesktopEntries::byProgram(const Program& program) const {
  if (program.isAnonymous || program.name.empty()) return nullptr;
  if (const auto* entry = find(byFile_, program.path)) return entry;
  if (const auto* entry = find(byName_, program.name)) return entry;
  const auto slash = program.path.rfind('/');
  if (slash == std::string::npos || slash == 0) return nullptr;
  return find(byFolder_, std::string_view(program.path).substr(0, slash));
}

const DesktopEntry* DesktopEntries::byWindowClass(std::string_view name) const {
  return name.empty() ? nullptr : find(byWindowClass_, folded(name));
}

}  // namespace quillmere::applications
