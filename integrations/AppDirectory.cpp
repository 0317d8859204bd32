// Lists of applications: joined, named, each once, in order.
#include "integrations/AppDirectory.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "core/TextOrder.h"
#include "runtime/Completion.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

std::string fileNameWithoutExtension(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  if (const auto slash = path.rfind('/'); slash != std::string_view::npos) path.remove_prefix(slash + 1);
  if (const auto dot = path.rfind('.'); dot != std::string_view::npos && dot > 0) path = path.substr(0, dot);
  return std::string(path);
}

InstalledApp listed(InstalledApplication application, bool isRunning) {
  auto name = application.name.value_or("");
  if (name.empty()) name = fileNameWithoutExtension(application.path);
  return {std::move(application.bundleID), std::move(name), std::move(application.path), isRunning};
}

/// All that is installed, each identifier once, by name. `running` holds what runs besides what the workspace tells.
std::vector<InstalledApp> scan(Workspace& workspace, std::set<std::string> running) {
  auto applications = workspace.installedApplications();
  for (auto& application : workspace.runningApplications()) {
    if (application.bundleID) running.insert(std::move(*application.bundleID));
  }
  std::vector<InstalledApp> apps;
  apps.reserve(applications.size());
  std::set<std::string> seen;
  for (auto& application : applications) {
    if (application.bundleID.empty() || !seen.insert(application.bundleID).second) continue;
    const bool isRunning = running.contains(application.bundleID);
    apps.push_back(listed(std::move(application), isRunning));
  }
  std::ranges::stable_sort(apps, [](const InstalledApp& left, const InstalledApp& right) {
    return compareNames(left.name, right.name) < 0;
  });
  return apps;
}

/// Knows nothing of the directory, which may go while it waits.
Async<std::vector<InstalledApp>> scanInBackground(Workspace& workspace, Executor& background,
                                                  std::set<std::string> running) {
  Completion<std::vector<InstalledApp>> done;
  background.post([&workspace, running = std::move(running), resolve = done.resolver()]() mutable {
    resolve(scan(workspace, std::move(running)));
  });
  auto apps = co_await done;
  co_return apps ? std::move(*apps) : std::vector<InstalledApp>{};
}

Async<std::optional<InstalledApp>> ask(Workspace& workspace, ApplicationChooser& chooser, Executor& background,
                                       ApplicationQuestion question) {
  Completion<std::optional<std::string>> chosen;
  chooser.choose(question, chosen.resolver());
  auto path = co_await chosen;
  if (!path || !*path) co_return std::nullopt;
  Completion<std::optional<InstalledApplication>> read;
  background.post([&workspace, path = **path, resolve = read.resolver()] { resolve(workspace.applicationAt(path)); });
  auto application = co_await read;
  if (!application || !*application || (*application)->bundleID.empty()) co_return std::nullopt;
  co_return listed(std::move(**application), false);
}

}  // namespace

std::string nameFromIdentifier(const std::string& bundleID) {
  std::string_view rest = bundleID;
  while (rest.ends_with('.')) rest.remove_suffix(1);
  if (const auto dot = rest.rfind('.'); dot != std::string_view::npos) rest.remove_prefix(dot + 1);
  std::string name(rest);
  std::ranges::replace(name, '-', ' ');
  bool startsWord = true;
  for (auto& letter : name) {
    if (startsWord && letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    startsWord = letter == ' ';
  }
  const bool saysNothing = std::ranges::all_of(name, [](char letter) { return letter == ' '; });
  return saysNothing ? bundleID : name;
}

AppDirectory::AppDirectory(Workspace& workspace, ApplicationChooser& chooser, const Runtime& runtime, Sounding sounding)
    : workspace_(workspace), chooser_(chooser), runtime_(runtime), sounding_(std::move(sounding)) {
  workspace_.onApplicationsChanged([this] { revision_.set(*revision_ + 1); });
}

AppDirectory::~AppDirectory() { workspace_.onApplicationsChanged({}); }

Async<std::vector<InstalledApp>> AppDirectory::installedApps() {
  QUILLMERE_CHECK_ON(runtime_.main, "applications are listed off the main thread");
  std::set<std::string> running;
  for (auto& application : sounding_ ? sounding_() : std::vector<RunningApplication>{}) {
    if (application.bundleID) running.insert(std::move(*application.bundleID));
  }
  return scanInBackground(workspace_, runtime_.background, std::move(running));
}

std::vector<InstalledApp> AppDirectory::runningApps() {
  QUILLMERE_CHECK_ON(runtime_.main, "applications are listed off the main thread");
  std::vector<InstalledApp> apps;
  for (auto& application : running()) {
    if (!application.bundleID || application.bundleID->empty() || !application.localizedName) continue;
    if (application.isProhibited) continue;
    auto installed = workspace_.installedApplication(*application.bundleID);
    apps.push_back({std::move(*application.bundleID), std::move(*application.localizedName),
                    installed ? std::move(installed->path) : std::string(), true});
  }
  return apps;
}

std::string AppDirectory::name(const std::string& bundleID) {
  QUILLMERE_CHECK_ON(runtime_.main, "applications are named off the main thread");
  for (const auto& application : running()) {
    if (application.bundleID != bundleID) continue;
    if (application.localizedName && !application.localizedName->empty()) return *application.localizedName;
    break;
  }
  const auto installed = workspace_.installedApplication(bundleID);
  if (installed && installed->name && !installed->name->empty()) return *installed->name;
  return nameFromIdentifier(bundleID);
}

Async<std::optional<InstalledApp>> AppDirectory::browse(ApplicationQuestion question) {
  QUILLMERE_CHECK_ON(runtime_.main, "applications are chosen off the main thread");
  return ask(workspace_, chooser_, runtime_.background, std::move(question));
}

std::vector<RunningApplication> AppDirectory::running() {
  auto applications = workspace_.runningApplications();
  if (!sounding_) return applications;
  std::set<std::string> listed;
  for (const auto& application : applications) {
    if (application.bundleID) listed.insert(*application.bundleID);
  }
  std::ranges::copy_if(sounding_(), std::back_inserter(applications), [&listed](const RunningApplication& application) {
    return application.bundleID && listed.insert(*application.bundleID).second;
  });
  return applications;
}

}  // namespace quillmere
