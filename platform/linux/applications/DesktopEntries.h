// The installed applications: every desktop entry of the user's data folders, with the ways to find one.
// Immutable once read, so any thread may hold it: [any]. Reading takes as long as the disk does.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DesktopEntry.h"

namespace quillmere::applications {

/// The XDG data folders, the user's own first, with the exports of Flatpak and Snap where they are not named already.
[[nodiscard]] std::vector<std::string> dataFolders();
/// What the session says its desktop is, the most particular name first.
[[nodiscard]] std::vector<std::string> currentDesktops();

/// Whether an entry with these lists is meant for a desktop of these names. Pure.
[[nodiscard]] bool isMeantFor(const std::vector<std::string>& onlyShowIn, const std::vector<std::string>& notShowIn,
                              const std::vector<std::string>& desktops);
/// Whether there is a program to run: a path, or a name to be looked for. [any but main]
[[nodiscard]] bool isProgram(const std::string& program, const std::string& searchPath);

class DesktopEntries {
 public:
  using Report = std::function<void(const std::string& problem)>;

  /// Where entries are, and what is to be known besides.
  struct Places {
    /// Each with an "applications" folder in it, the most important first.
    std::vector<std::string> folders;
    /// Where programs without a folder of their own are looked for.
    std::string searchPath;
    /// The names of the desktop that runs; decides which entries are listed.
    std::vector<std::string> desktops;
  };

  /// Reads them all; an entry in an earlier folder hides those of the same id in later ones. Broken files are left out,
  /// and reported together in one text. [any but main]
  [[nodiscard]] static std::shared_ptr<const DesktopEntries> read(const Places& places, const Report& report);
  /// Of entries that have been read already, the most important first. [any but main]
  [[nodiscard]] static std::shared_ptr<const DesktopEntries> of(std::vector<DesktopEntry> entries,
                                                                const std::string& searchPath);
  /// Reads one file, wherever it is; below one of the folders it has the id that it has there. Absent if it is no
  /// application's. [any but main]
  [[nodiscard]] static std::optional<DesktopEntry> readFile(const Places& places, const std::string& path);

  /// By identifier; a spelling that differs in case only is taken where there is no exact one. Null if unknown.
  [[nodiscard]] const DesktopEntry* byID(std::string_view id) const;
  /// By the id of a Flatpak or Snap.
  [[nodiscard]] const DesktopEntry* bySandboxID(std::string_view id) const;
  /// By what a process runs: the same file, a file of the same name, a file in the application's own folder.
  [[nodiscard]] const DesktopEntry* byProgram(const Program& program) const;
  /// By StartupWMClass, ignoring case.
  [[nodiscard]] const DesktopEntry* byWindowClass(std::string_view name) const;

  /// In the order of the folders, and of the paths within one.
  [[nodiscard]] const std::vector<DesktopEntry>& all() const { return entries_; }

 private:
  using Index = std::map<std::string, std::size_t, std::less<>>;
  void index(const std::string& searchPath);
  [[nodiscard]] const DesktopEntry* find(const Index& index, std::string_view key) const;

  std::vector<DesktopEntry> entries_;
  Index byID_;
  Index byFoldedID_;
  Index bySandboxID_;
  Index byFile_;
  Index byName_;
  Index byFolder_;
  Index byWindowClass_;
};

}  // namespace quillmere::applications
