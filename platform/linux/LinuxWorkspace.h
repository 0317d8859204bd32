// The workspace of a Linux desktop: processes and desktop entries, and whatever has an audio client.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/Workspace.h"
#include "platform/linux/PipeWireAudioHardware.h"
#include "runtime/Logger.h"

namespace quillmere {

class ApplicationRegistry;

/// [any]; nothing here waits for a file or a program on [main] except the start of the program that opens an address.
class LinuxWorkspace final : public Workspace {
 public:
  using AudioClients = std::function<std::vector<AudioClient>()>;

  /// `audioClients` tells which applications have audio streams; may be empty. [any]
  LinuxWorkspace(std::shared_ptr<ApplicationRegistry> registry, AudioClients audioClients, LogSink& log);

  /// Raised for a look that has found something else; what audio clients tell is the audio host's to raise.
  [[nodiscard]] const ChangeSignal& changes() const override;
  /// One entry an application: the visible ones that run, in the order of their appearance, then those that only an
  /// audio client tells of.
  [[nodiscard]] std::vector<RunningApplication> runningApplications() override;
  [[nodiscard]] std::optional<IconReference> icon(const std::string& bundleID) override;
  [[nodiscard]] std::vector<InstalledApplication> installedApplications() override;
  [[nodiscard]] std::optional<InstalledApplication> installedApplication(const std::string& bundleID) override;
  [[nodiscard]] std::optional<InstalledApplication> applicationAt(const std::string& path) override;
  void onApplicationsChanged(std::function<void()> callback) override;
  /// Hands the address to the desktop's opener; false for what is no address and where there is no opener.
  bool openURL(const std::string& url) override;

 private:
  /// What runningApplications() has answered last, and what from.
  struct Answer {
    std::uint64_t pictureNumber = 0;
    std::vector<AudioClient> clients;
    std::vector<RunningApplication> running;
  };
  [[nodiscard]] std::vector<RunningApplication> join(const std::vector<AudioClient>& clients) const;

  std::shared_ptr<ApplicationRegistry> registry_;
  AudioClients audioClients_;
  Logger log_;
  std::mutex answerMutex_;
  std::optional<Answer> answer_;
};

}  // namespace quillmere
