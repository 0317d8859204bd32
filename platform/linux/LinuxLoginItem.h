// The login item of a Linux desktop: an entry in the XDG autostart folder.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/LoginItem.h"

namespace quillmere {

struct LinuxLoginItemOptions {
  /// The program to start, as an absolute path; empty if it is not known, and then nothing can be registered.
  std::string program;
  /// The user's configuration folder; absent means the one of the environment.
  std::optional<std::string> configHome;
  /// The system's, the most important first; absent means those of the environment.
  std::optional<std::vector<std::string>> configFolders;
  /// What the session's desktop is called; absent means what the session says.
  std::optional<std::vector<std::string>> desktops;
  /// Where programs without a folder are looked for; absent means the PATH variable.
  std::optional<std::string> searchPath;
  /// Whether the programs that entries name are to be found from here; not so from within a sandbox.
  bool seesPrograms = true;
};

/// The file is the truth: desktops, their settings and people with editors change it too, so it is read each time, and
/// what others have put into it stays. [any but main]
class LinuxLoginItem final : public LoginItem {
 public:
  /// The file's name in an autostart folder.
  static constexpr const char* fileName = "app.quillmere.host.desktop";

  explicit LinuxLoginItem(LinuxLoginItemOptions options);

  /// Writes the user's entry, which starts the program in the background.
  Failure registerItem() override;
  /// Takes the user's entry away; where the system has one too, the user's says that it doesn't count.
  Failure unregisterItem() override;
  /// Enabled if the session would start the program: the first entry of that name in the order of the folders counts,
  /// unless it is hidden, switched off, meant for other desktops, or names a program that is not there.
  [[nodiscard]] LoginItemStatus status() override;

 private:
  [[nodiscard]] std::string userFile() const;
  [[nodiscard]] LoginItemStatus statusIn(const std::vector<std::string>& folders) const;

  std::string program_;
  std::string configHome_;
  std::vector<std::string> configFolders_;
  std::vector<std::string> desktops_;
  std::string searchPath_;
  bool seesPrograms_;
};

}  // namespace quillmere
