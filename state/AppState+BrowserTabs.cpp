// The tabs of browsers: a poll of those that are listed, and the way to one of them.
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "integrations/BrowserTabActivator.h"
#include "integrations/BrowserTabMonitor.h"
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

namespace {

constexpr auto pollInterval = std::chrono::seconds(3);

}  // namespace

void AppState::startBrowserTabStream() {
  if (!tabMonitor_) return;
  const std::weak_ptr<AppState> weak = weak_from_this();
  const auto runningBrowsers = [weak, &main = runtime_.main] {
    if (!main.isCurrent()) preconditionFailure("the listed browsers are asked for off the main thread");
    std::set<std::string> running;
    const auto self = weak.lock();
    if (!self) return running;
    for (const auto& app : *self->apps_) {
      if (BrowserTabMonitor::scripts().contains(app.bundleID)) running.insert(app.bundleID);
    }
    return running;
  };
  startTask(runtime_.main, [weak, monitor = tabMonitor_, runningBrowsers](TaskContext&) -> Async<void> {
    auto polls = monitor->stream(runningBrowsers, pollInterval);
    while (true) {
      auto tabs = co_await polls.next();
      const auto self = weak.lock();
      if (!tabs || !self) co_return;
      self->browserTabs_.set(std::move(*tabs));
    }
  });
}

void AppState::activateTab(std::string bundleID, BrowserTab tab) {
  QUILLMERE_CHECK_ON(runtime_.main, "activateTab off the main thread");
  if (tabActivator_) tabActivator_->activate(bundleID, tab);
}

}  // namespace quillmere
