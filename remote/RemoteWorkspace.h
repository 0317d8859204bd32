// The applications' icons as another process gets them: by asking the one that knows the desktop's entries.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>

#include "platform/Workspace.h"
#include "remote/SendMessage.h"

namespace quillmere {

class RemoteWorkspace final : public Workspace {
 public:
  explicit RemoteWorkspace(SendMessage send);

  /// True if the message was for it. Called where messages arrive, which must not be a thread that waits for an icon.
  bool take(const nlohmann::json& message);
  /// Nothing more comes: whoever waits goes without. [any]
  void close();

  /// Nobody in this process asks.
  [[nodiscard]] std::vector<RunningApplication> runningApplications() override { return {}; }
  [[nodiscard]] std::vector<InstalledApplication> installedApplications() override { return {}; }
  [[nodiscard]] std::optional<InstalledApplication> installedApplication(const std::string&) override { return {}; }
  [[nodiscard]] std::optional<InstalledApplication> applicationAt(const std::string&) override { return {}; }
  void onApplicationsChanged(std::function<void()>) override {}
  /// Waits for the answer. [any but main]
  [[nodiscard]] std::optional<IconReference> icon(const std::string& bundleID) override;
  /// True: whether the program could be started is not known here.
  bool openURL(const std::string& url) override;

 private:
  SendMessage send_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isClosed_ = false;
  std::uint64_t lastNumber_ = 0;
  std::map<std::uint64_t, std::optional<IconReference>> answers_;
};

}  // namespace quillmere
