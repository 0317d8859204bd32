// A workspace that a test sets by hand.
#include "platform/memory/MemoryWorkspace.h"

#include <algorithm>
#include <utility>

namespace quillmere {

std::vector<RunningApplication> MemoryWorkspace::runningApplications() {
  const std::lock_guard lock(mutex_);
  ++listings_;
  return applications_;
}

std::optional<IconReference> MemoryWorkspace::icon(const std::string& bundleID) {
  const std::lock_guard lock(mutex_);
  const auto found = icons_.find(bundleID);
  if (found == icons_.end()) return std::nullopt;
  return found->second;
}

std::vector<InstalledApplication> MemoryWorkspace::installedApplications() {
  const std::lock_guard lock(mutex_);
  ++scans_;
  return installed_;
}

std::optional<InstalledApplication> MemoryWorkspace::installedApplication(const std::string& bundleID) {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(installed_, bundleID, &InstalledApplication::bundleID);
  if (found == installed_.end()) return std::nullopt;
  return *found;
}

std::optional<InstalledApplication> MemoryWorkspace::applicationAt(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(installed_, path, &InstalledApplication::path);
  if (found == installed_.end()) return std::nullopt;
  return *found;
}

void MemoryWorkspace::onApplicationsChanged(std::function<void()> callback) { changed_ = std::move(callback); }

void MemoryWorkspace::install(std::string bundleID, std::optional<std::string> name, std::string path) {
  const std::lock_guard lock(mutex_);
  installed_.push_back({std::move(bundleID), std::move(name), std::move(path)});
}

void MemoryWorkspace::uninstall(const std::string& bundleID) {
  const std::lock_guard lock(mutex_);
  std::erase_if(installed_, [&](const InstalledApplication& each) { return each.bundleID == bundleID; });
}

void MemoryWorkspace::tellApplicationsChanged() {
  if (changed_) changed_();
}

int MemoryWorkspace::scanCount() const {
  const std::lock_guard lock(mutex_);
  return scans_;
}

bool MemoryWorkspace::openURL(const std::string& url) {
  const std::lock_guard lock(mutex_);
  openedURLs_.push_back(url);
  return opensURLs_ && !url.empty();
}

void MemoryWorkspace::setRunningApplications(std::vector<RunningApplication> applications) {
  const std::lock_guard lock(mutex_);
  applications_ = std::move(applications);
  changes_.raise();
}

void MemoryWorkspace::launch(std::string bundleID, std::string localizedName, std::int32_t pid) {
  const std::lock_guard lock(mutex_);
  applications_.push_back({std::move(bundleID), std::move(localizedName), pid});
  changes_.raise();
}

void MemoryWorkspace::terminate(const std::string& bundleID) {
  const std::lock_guard lock(mutex_);
  std::erase_if(applications_, [&](const RunningApplication& application) { return application.bundleID == bundleID; });
  changes_.raise();
}

void MemoryWorkspace::setIcon(const std::string& bundleID, IconReference icon) {
  const std::lock_guard lock(mutex_);
  icons_[bundleID] = std::move(icon);
}

void MemoryWorkspace::setOpensURLs(bool opens) {
  const std::lock_guard lock(mutex_);
  opensURLs_ = opens;
}

std::vector<std::string> MemoryWorkspace::openedURLs() const {
  const std::lock_guard lock(mutex_);
  return openedURLs_;
}

int MemoryWorkspace::listingCount() const {
  const std::lock_guard lock(mutex_);
  return listings_;
}

}  // namespace quillmere
