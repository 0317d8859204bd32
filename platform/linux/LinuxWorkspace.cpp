// The workspace of a Linux desktop.
#include "platform/linux/LinuxWorkspace.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "platform/linux/ApplicationRegistry.h"
#include "platform/linux/PipeWireAudioHardware.h"
#include "text/CleanText.h"

namespace quillmere {
namespace {

constexpr std::size_t maxURLBytes = 16384;

bool isAddress(const std::string& url) {
  if (url.size() > maxURLBytes || url.find('\0') != std::string::npos) return false;
  return g_uri_is_valid(url.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr) != FALSE;
}

InstalledApplication installedFrom(KnownApplication application) {
  std::optional<std::string> name;
  if (!application.name.empty()) name = std::move(application.name);
  return {std::move(application.identifier), std::move(name), std::move(application.path)};
}

std::string takeMessage(GError* error) {
  std::string message = error == nullptr ? "unknown error" : error->message;
  if (error != nullptr) g_error_free(error);
  return message;
}

}  // namespace

LinuxWorkspace::LinuxWorkspace(std::shared_ptr<ApplicationRegistry> registry, AudioClients audioClients, LogSink& log)
    : registry_(std::move(registry)), audioClients_(std::move(audioClients)), log_(log, "LinuxWorkspace") {}

const ChangeSignal& LinuxWorkspace::changes() const { return registry_->changes(); }

std::vector<RunningApplication> LinuxWorkspace::runningApplications() {
  auto clients = audioClients_ ? audioClients_() : std::vector<AudioClient>{};
  const auto pictureNumber = registry_->pictureNumber();
  {
    // Asked many times a second, and nearly always about the same.
    const std::lock_guard lock(answerMutex_);
    if (answer_ && answer_->pictureNumber == pictureNumber && answer_->clients == clients) return answer_->running;
  }
  auto running = join(clients);
  const std::lock_guard lock(answerMutex_);
  answer_ = Answer{pictureNumber, std::move(clients), running};
  return running;
}

std::vector<RunningApplication> LinuxWorkspace::join(const std::vector<AudioClient>& clients) const {
  std::set<std::string_view> sounding;
  for (const auto& client : clients) {
    if (client.hasPlayed) sounding.insert(client.identifier);
  }
  std::vector<RunningApplication> running;
  std::set<std::string> listed;
  for (const auto& application : registry_->runningApplications()) {
    if (!application.isVisible && !sounding.contains(application.identifier)) continue;
    std::optional<std::string> name;
    if (!application.name.empty()) name = application.name;
    running.push_back({application.identifier, std::move(name), application.pid});
    listed.insert(application.identifier);
  }
  for (const auto& client : clients) {
    if (client.identifier.empty() || listed.contains(client.identifier)) continue;
    const auto installed = registry_->application(client.identifier);
    // A tool that only records is not what people call an application, unless it is installed as one.
    if (!client.hasPlayed && !(installed && installed->isVisible)) continue;
    listed.insert(client.identifier);
    std::optional<std::string> name;
    if (installed && !installed->name.empty()) {
      name = installed->name;
    } else if (auto told = cleanText(client.displayName, maxDisplayNameBytes); !told.empty()) {
      name = std::move(told);
    }
    running.push_back({client.identifier, std::move(name), std::max(client.pid, 0)});
  }
  for (auto& application : running) {
    // An application that runs under a name of its entry's keeps it; one without any goes by its identifier.
    if (!application.localizedName) application.localizedName = application.bundleID;
  }
  return running;
}

std::optional<IconReference> LinuxWorkspace::icon(const std::string& bundleID) {
  const auto application = registry_->application(bundleID);
  return application ? application->icon : std::nullopt;
}

std::vector<InstalledApplication> LinuxWorkspace::installedApplications() {
  std::vector<InstalledApplication> installed;
  for (auto& application : registry_->listedApplications()) installed.push_back(installedFrom(std::move(application)));
  return installed;
}

std::optional<InstalledApplication> LinuxWorkspace::installedApplication(const std::string& bundleID) {
  auto application = registry_->application(bundleID);
  if (!application || application->path.empty()) return std::nullopt;
  return installedFrom(std::move(*application));
}

std::optional<InstalledApplication> LinuxWorkspace::applicationAt(const std::string& path) {
  auto application = registry_->applicationAt(path);
  if (!application) return std::nullopt;
  return installedFrom(std::move(*application));
}

void LinuxWorkspace::onApplicationsChanged(std::function<void()> callback) {
  registry_->onChanged(std::move(callback));
}

bool LinuxWorkspace::openURL(const std::string& url) {
  if (!isAddress(url)) {
    log_.error("not opened, no address: " + cleanText(url, maxDisplayNameBytes));
    return false;
  }
  GError* error = nullptr;
  if (char* opener = g_find_program_in_path("xdg-open"); opener != nullptr) {
    std::string address(url);
    std::array<char*, 3> command{opener, address.data(), nullptr};
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    const bool isStarted =
        g_spawn_async(nullptr, command.data(), nullptr, flags, nullptr, nullptr, nullptr, &error) != FALSE;
    g_free(opener);
    if (!isStarted) log_.error("the opener did not start: " + takeMessage(error));
    return isStarted;
  }
  if (g_app_info_launch_default_for_uri(url.c_str(), nullptr, &error) != FALSE) return true;
  log_.error("no program opens " + cleanText(url, maxDisplayNameBytes) + ": " + takeMessage(error));
  return false;
}

}  // namespace quillmere
