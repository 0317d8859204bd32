// Looking for browsers, and writing and removing one small file for each.
#include "platform/linux/LinuxBrowserSetUp.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "applications/SmallFile.h"
#include "tabs/Browsers.h"
#include "tabs/HostManifest.h"

namespace quillmere {

namespace {

namespace fs = std::filesystem;

constexpr const char* userFolder = "NativeMessagingHosts";

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string configHomeOfUser() {
  auto home = variable("XDG_CONFIG_HOME");
  if (home.starts_with('/')) return home;
  home = variable("HOME");
  return home.starts_with('/') ? home + "/.config" : "";
}

/// Whether the words start a program that may start another one. Everything from Snap is a link to one program.
bool canStart(const fs::path& command) {
  std::error_code error;
  const auto program = fs::canonical(command, error);
  return !error && program.filename() != "snap" && ::access(program.c_str(), X_OK) == 0;
}

bool isInstalled(const tabs::Browser& browser, std::string_view searchPath) {
  while (!searchPath.empty()) {
    const auto end = std::min(searchPath.find(':'), searchPath.size());
    const fs::path folder = searchPath.substr(0, end);
    searchPath.remove_prefix(std::min(end + 1, searchPath.size()));
    if (!folder.is_absolute()) continue;
    if (std::ranges::any_of(browser.commands, [&](auto command) { return canStart(folder / command); })) return true;
  }
  return false;
}

const tabs::Browser* find(const std::string& key) {
  const auto known = tabs::knownBrowsers();
  const auto found = std::ranges::find(known, key, &tabs::Browser::key);
  return found != known.end() ? &*found : nullptr;
}

std::string manifestName() {
  std::string name(tabs::hostName);
  name += ".json";
  return name;
}

/// The user's manifests: the usual folder's, and those of the channels that are there.
std::vector<fs::path> manifestsOf(const tabs::Browser& browser, const std::string& configHome) {
  std::vector<fs::path> manifests;
  for (const auto folder : browser.folders) {
    const auto settings = fs::path(configHome) / folder;
    std::error_code error;
    if (manifests.empty() || fs::is_directory(settings, error)) {
      manifests.push_back(settings / userFolder / manifestName());
    }
  }
  return manifests;
}

/// What is missing of the folder is made for the user alone, as the browser would: it keeps its profiles there, and
/// doesn't close a folder that it finds open.
bool makeFolder(const fs::path& folder) {
  if (::mkdir(folder.c_str(), S_IRWXU) == 0) return true;
  if (errno == ENOENT && folder.has_relative_path() && makeFolder(folder.parent_path())) {
    return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
  }
  return errno == EEXIST;
}

/// In one step: a browser never reads half of it.
BrowserSetUp::Failure write(const fs::path& file, const std::string& text) {
  std::error_code error;
  if (!makeFolder(file.parent_path())) return file.parent_path().string() + ": " + std::strerror(errno);
  const auto unready = file.string() + ".new";
  {
    std::ofstream stream(unready, std::ios::binary | std::ios::trunc);
    stream << text << std::flush;
    if (!stream) return unready + ": " + std::strerror(errno);
  }
  fs::rename(unready, file, error);
  if (error) return file.string() + ": " + error.message();
  return std::nullopt;
}

}  // namespace

LinuxBrowserSetUp::LinuxBrowserSetUp(LinuxBrowserSetUpOptions options)
    : options_(std::move(options)),
      configHome_(options_.configHome.value_or(configHomeOfUser())),
      searchPath_(options_.searchPath.value_or(variable("PATH"))) {}

/// Whether the manifest lets our companion start a program that is there.
bool LinuxBrowserSetUp::isWorking(const std::string& manifest) const {
  std::string problem;
  const auto text = applications::readSmallFile(manifest, problem);
  if (!text) return false;
  const auto program = tabs::programInManifest(*text);
  return program && ::access(program->c_str(), X_OK) == 0;
}

std::vector<InstalledBrowser> LinuxBrowserSetUp::browsers() {
  std::vector<InstalledBrowser> found;
  for (const auto& browser : tabs::knownBrowsers()) {
    if (!isInstalled(browser, searchPath_)) continue;
    InstalledBrowser each{std::string(browser.key), std::string(browser.name), false};
    // The user's hides the system's from a browser even where it doesn't work.
    const auto users = manifestsOf(browser, configHome_).front();
    std::error_code error;
    if (fs::exists(users, error)) {
      each.hasHost = isWorking(users);
    } else if (!browser.systemFolder.empty()) {
      each.hasHost = isWorking(options_.systemRoot + std::string(browser.systemFolder) + '/' + manifestName());
      each.isSystems = each.hasHost;
    }
    found.push_back(std::move(each));
  }
  return found;
}

BrowserSetUp::Failure LinuxBrowserSetUp::install(const std::string& key) {
  const auto* browser = find(key);
  if (browser == nullptr) return "no browser is known as " + key;
  if (options_.hostProgram.empty()) return "the program for browsers to start is missing";
  if (configHome_.empty()) return "this user has no configuration folder";
  for (const auto& manifest : manifestsOf(*browser, configHome_)) {
    if (auto failure = write(manifest, tabs::manifestText(options_.hostProgram))) return failure;
  }
  return std::nullopt;
}

BrowserSetUp::Failure LinuxBrowserSetUp::remove(const std::string& key) {
  const auto* browser = find(key);
  if (browser == nullptr) return "no browser is known as " + key;
  for (const auto& manifest : manifestsOf(*browser, configHome_)) {
    std::error_code error;
    fs::remove(manifest, error);
    if (error) return manifest.string() + ": " + error.message();
  }
  return std::nullopt;
}

}  // namespace quillmere
