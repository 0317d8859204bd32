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

std::set<std::string> browsersIn(const std::vector<AudioApp>& apps) {
  std::set<std::string> browsers;
  for (const auto& app : apps) {
    if (BrowserTabMonitor::scripts().contains(app.bundleID)) browsers.insert(app.bundleID);
  }
  return browsers;
}

}  // namespace

Subscription AppState::followListedBrowsers(std::function<void()> changed) {
  return apps_.observe([changed = std::move(changed), known = browsersIn(*apps_)](const auto& apps) mutable {
    auto browsers = browsersIn(apps);
    if (browsers == known) return;
    known = std::move(browsers);
    changed();
  });
}

void AppState::startBrowserTabStream() {
  if (!tabMonitor_) return;
  const std::weak_ptr<AppState> weak = weak_from_this();
  const auto runningBrowsers = [weak, &main = runtime_.main] {
    if (!main.isCurrent()) preconditionFailure("the listed browsers are asked for off the main thread");
    const auto self = weak.lock();
    return self ? browsersIn(*self->apps_) : std::set<std::string>();
  };
  startTask(runtime_.main, [weak, monitor = tabMonitor_, runningBrowsers](TaskContext&) -> Async<void> {
    auto polls = monitor->stream(runningBrowsers, pollInterval);
    polls.setPace(Pace::whenChanged);
    Subscription browsers;
    if (const auto self = weak.lock()) browsers = self->followListedBrowsers(polls.asker());
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
