// The applications of a Mac, from its workspace and from the bundles in its application folders.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Workspace.h"

namespace quillmere {

/// Threads as in the port: the workspace and bundles may be asked on any.
class MacWorkspace final : public Workspace {
 public:
  /// [main]
  MacWorkspace();
  ~MacWorkspace() override;
  MacWorkspace(const MacWorkspace&) = delete;
  MacWorkspace& operator=(const MacWorkspace&) = delete;

  [[nodiscard]] std::vector<RunningApplication> runningApplications() override;
  /// The picture that the system shows, 256 pixels wide.
  [[nodiscard]] std::optional<IconReference> icon(const std::string& bundleID) override;
  /// Of the folder for everybody, the user's own, and the one for utilities.
  [[nodiscard]] std::vector<InstalledApplication> installedApplications() override;
  [[nodiscard]] std::optional<InstalledApplication> installedApplication(const std::string& bundleID) override;
  [[nodiscard]] std::optional<InstalledApplication> applicationAt(const std::string& path) override;
  /// Told of every application that starts or ends, of those without a place in the Dock too; of one that is installed,
  /// nobody is.
  void onApplicationsChanged(std::function<void()> callback) override;
  bool openURL(const std::string& url) override;

 private:
  struct Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace quillmere
