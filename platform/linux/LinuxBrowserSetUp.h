// Manifests that tell browsers of the program which their companion speaks to.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/BrowserSetUp.h"

namespace quillmere {

struct LinuxBrowserSetUpOptions {
  /// The program that browsers are to start, as an absolute path; empty if it is not known.
  std::string hostProgram;
  /// The folder that the companion is loaded from.
  std::string companionFolder;
  /// Absent means XDG_CONFIG_HOME.
  std::optional<std::string> configHome;
  /// Folders of programs, parted by colons; absent means PATH.
  std::optional<std::string> searchPath;
  /// Stands before the system's folders.
  std::string systemRoot;
};

/// Knows browsers that were installed by packages. One from Flatpak or Snap is left out: it can't start a program
/// outside of its sandbox. [any but main]
class LinuxBrowserSetUp final : public BrowserSetUp {
 public:
  /// [any]
  explicit LinuxBrowserSetUp(LinuxBrowserSetUpOptions options);

  [[nodiscard]] std::vector<InstalledBrowser> browsers() override;
  Failure install(const std::string& key) override;
  Failure remove(const std::string& key) override;
  [[nodiscard]] std::string companionFolder() const override { return options_.companionFolder; }

 private:
  [[nodiscard]] bool isWorking(const std::string& manifest) const;

  const LinuxBrowserSetUpOptions options_;
  const std::string configHome_;
  const std::string searchPath_;
};

}  // namespace quillmere
