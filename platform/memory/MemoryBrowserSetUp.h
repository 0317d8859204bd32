// Browsers that a test puts on the machine.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/BrowserSetUp.h"

namespace quillmere {

/// [any]
class MemoryBrowserSetUp final : public BrowserSetUp {
 public:
  [[nodiscard]] std::vector<InstalledBrowser> browsers() override {
    const std::scoped_lock lock(mutex_);
    return browsers_;
  }
  Failure install(const std::string& key) override { return put(key, true); }
  Failure remove(const std::string& key) override { return put(key, false); }
  [[nodiscard]] std::string companionFolder() const override { return "/usr/share/quillmere/extension"; }

  void setBrowsers(std::vector<InstalledBrowser> browsers) {
    const std::scoped_lock lock(mutex_);
    browsers_ = std::move(browsers);
  }
  /// What every change comes to.
  void setFailure(Failure failure) {
    const std::scoped_lock lock(mutex_);
    failure_ = std::move(failure);
  }

 private:
  Failure put(const std::string& key, bool hasHost) {
    const std::scoped_lock lock(mutex_);
    const auto browser = std::ranges::find(browsers_, key, &InstalledBrowser::key);
    if (browser == browsers_.end()) return "no such browser";
    if (!failure_) browser->hasHost = hasHost;
    return failure_;
  }

  std::mutex mutex_;
  std::vector<InstalledBrowser> browsers_;
  Failure failure_;
};

}  // namespace quillmere
