// A workspace whose running applications, icons and openers a test sets by hand.
// Calls are recorded.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Workspace.h"

namespace quillmere {

/// [any]
class MemoryWorkspace final : public Workspace {
 public:
  [[nodiscard]] std::vector<RunningApplication> runningApplications() override;
  [[nodiscard]] std::optional<IconReference> icon(const std::string& bundleID) override;
  [[nodiscard]] std::vector<InstalledApplication> installedApplications() override;
  [[nodiscard]] std::optional<InstalledApplication> installedApplication(const std::string& bundleID) override;
  [[nodiscard]] std::optional<InstalledApplication> applicationAt(const std::string& path) override;
  void onApplicationsChanged(std::function<void()> callback) override;
  bool openURL(const std::string& url) override;

  /// False: nobody is told that anything has changed.
  void setTellsChanges(bool tells) { tellsChanges_ = tells; }
  [[nodiscard]] const ChangeSignal& changes() const override {
    return tellsChanges_ ? changes_ : ChangeSignal::absent();
  }
  /// Replaces the whole list, in the order in which it will be told.
  void setRunningApplications(std::vector<RunningApplication> applications);
  /// Adds one application behind those that run.
  void launch(std::string bundleID, std::string localizedName, std::int32_t pid);
  /// Drops every entry with this identifier.
  void terminate(const std::string& bundleID);
  /// Adds one application behind those that are installed.
  void install(std::string bundleID, std::optional<std::string> name, std::string path);
  /// Drops every installed entry with this identifier.
  void uninstall(const std::string& bundleID);
  /// What a look of the host would do that finds other applications. [main]
  void tellApplicationsChanged();
  void setIcon(const std::string& bundleID, IconReference icon);
  /// What the next openURL calls return; true at first.
  void setOpensURLs(bool opens);

  /// Every address that was asked for, handed over or not.
  [[nodiscard]] std::vector<std::string> openedURLs() const;
  /// How often the running applications were asked for.
  [[nodiscard]] int listingCount() const;
  /// How often the installed applications were asked for.
  [[nodiscard]] int scanCount() const;

 private:
  mutable std::mutex mutex_;
  ChangeSignal changes_;
  std::atomic<bool> tellsChanges_ = true;
  std::vector<RunningApplication> applications_;
  std::map<std::string, IconReference> icons_;
  std::vector<std::string> openedURLs_;
  bool opensURLs_ = true;
  int listings_ = 0;
  std::vector<InstalledApplication> installed_;
  std::function<void()> changed_;
  int scans_ = 0;
};

}  // namespace quillmere
