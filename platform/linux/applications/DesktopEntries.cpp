// Reading and indexing desktop entries.
#include "applications/DesktopEntries.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

namespace quillmere::applications {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t maxFileBytes = std::uintmax_t{1024} * 1024;
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

class Reader {
 public:
  explicit Reader(const DesktopEntries::Report& report) : report_(report) {}

  void readFolder(const fs::path& folder) {
    std::error_code error;
    const auto options =
        fs::directory_options::follow_directory_symlink | fs::directory_options::skip_permission_denied;
    std::vector<fs::path> files;
    for (fs::recursive_directory_iterator at(folder, options, error), end; !error && at != end; at.increment(error)) {
      if (at.depth() >= maxDepth) at.disable_recursion_pending();
      if (at->path().extension() == ".desktop") files.push_back(at->path());
      if (files.size() > maxEntries) break;
    }
    std::ranges::sort(files);
    for (const auto& file : files) readFile(file, folder);
  }

  std::vector<DesktopEntry> entries;

 private:
  void readFile(const fs::path& file, const fs::path& folder) {
    const auto id = idOf(file, folder);
    if (seen_.contains(id)) return;
    std::error_code error;
    const auto size = fs::file_size(file, error);
    if (error || !fs::is_regular_file(file, error)) return;
    if (size > maxFileBytes) {
      report_("desktop entry " + file.string() + " ignored: too large");
      return;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (!stream) return;
    std::string problem;
    auto entry = parseDesktopEntry(id, text, problem);
    if (!entry) {
      if (problem != "not an application") report_("desktop entry " + file.string() + " ignored: " + problem);
      return;
    }
    seen_.insert(id);
    if (entry->isDeleted) return;
    entry->path = file.string();
    entries.push_back(std::move(*entry));
  }

  const DesktopEntries::Report& report_;
  std::set<std::string> seen_;
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

std::shared_ptr<const DesktopEntries> DesktopEntries::read(const std::vector<std::string>& folders,
                                                           const std::string& searchPath, const Report& report) {
  Reader reader(report);
  for (const auto& folder : folders) reader.readFolder(fs::path(folder) / "applications");
  auto entries = std::make_shared<DesktopEntries>();
  entries->entries_ = std::move(reader.entries);
  entries->index(searchPath);
  return entries;
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
