// Which browser a host belongs to, and requests as questions to the listener.
#include "platform/linux/LinuxTabScripting.h"

#include <gio/gdesktopappinfo.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "core/Product.h"
#include "tabs/BrowserOfHost.h"
#include "tabs/Browsers.h"
#include "tabs/HostListener.h"
#include "tabs/MeetingPlace.h"

namespace quillmere {

namespace {

tabs::BrowserFacts browserOf(ApplicationRegistry& registry, std::int32_t hostPID) {
  const auto browser = tabs::parentOf("/proc", hostPID);
  if (browser == 0) return {};
  ClientFacts facts;
  facts.pid = browser;
  facts.pidIsTrusted = true;
  return {registry.identify(facts), tabs::programOf("/proc", browser)};
}

}  // namespace

/// Outlives the scripts that have been made ready.
class LinuxTabScripting::Lines {
 public:
  struct Observer {
    /// [main]
    std::function<void()> changed;
  };

  Lines(const Runtime& runtime, std::shared_ptr<ApplicationRegistry> registry, LinuxTabScriptingOptions options)
      : listener(tabs::HostListenerOptions{
                     .runtimeFolder = options.runtimeFolder ? *options.runtimeFolder : tabs::sessionRuntimeFolder(),
                     .identify =
                         [registry, &background = runtime.background](std::int32_t hostPID, const auto& found) {
                           background.post([registry, hostPID, found] { found(browserOf(*registry, hostPID)); });
                         },
                     .version = std::string(appVersion()),
                     .changed =
                         [&main = runtime.main, observer = observer] {
                           main.post([observer] {
                             if (observer->changed) observer->changed();
                           });
                         },
                     .told = [this] { changes.raise(); }},
                 runtime.clocks, runtime.log),
        applications(std::move(registry)) {}

  const std::shared_ptr<Observer> observer = std::make_shared<Observer>();
  ChangeSignal changes;
  tabs::HostListener listener;
  const std::shared_ptr<ApplicationRegistry> applications;
};

namespace {

/// Starts a browser from its desktop entry. [background]
std::optional<std::string> start(ApplicationRegistry& registry, const std::string& bundleID) {
  const auto application = registry.application(bundleID);
  auto* entry = application && !application->path.empty()
                    ? g_desktop_app_info_new_from_filename(application->path.c_str())
                    : nullptr;
  if (entry == nullptr) return "no companion of this browser is connected, and no desktop entry starts it";
  GError* error = nullptr;
  const bool isStarted = g_app_info_launch(G_APP_INFO(entry), nullptr, nullptr, &error) != FALSE;
  g_object_unref(entry);
  if (isStarted) return std::nullopt;
  std::string message = error == nullptr ? "it did not start" : error->message;
  g_clear_error(&error);
  return message;
}

TabScriptResult answer(tabs::HostListener& listener, ApplicationRegistry& registry, const TabRequest& request) {
  TabScriptResult result;
  if (request.kind == TabRequest::Kind::query) {
    result.text = listener.query(request.bundleID);
  } else if (listener.activate(request.bundleID, request.window, request.tab) ==
             tabs::HostListener::Activation::nobodyThere) {
    // It has gone since the last poll, and the tab with it; who wants it gets the browser.
    if (const auto words = start(registry, request.bundleID)) result.error = TabScriptResult::Error{words, *words, 1};
  }
  return result;
}

class Question final : public TabScript {
 public:
  Question(std::function<TabScriptResult()> ask) : ask_(std::move(ask)) {}
  TabScriptResult execute() override { return ask_(); }

 private:
  std::function<TabScriptResult()> ask_;
};

}  // namespace

LinuxTabScripting::LinuxTabScripting(const Runtime& runtime, std::shared_ptr<ApplicationRegistry> registry,
                                     LinuxTabScriptingOptions options)
    : lines_(std::make_shared<Lines>(runtime, std::move(registry), std::move(options))) {}

LinuxTabScripting::~LinuxTabScripting() = default;

class LinuxTabScripting::Companions final : public BrowserCompanions {
 public:
  explicit Companions(std::shared_ptr<Lines> lines) : lines_(std::move(lines)) {}
  ~Companions() override { lines_->observer->changed = nullptr; }
  Companions(const Companions&) = delete;
  Companions& operator=(const Companions&) = delete;

  [[nodiscard]] std::vector<BrowserCompanion> connected() const override {
    std::vector<BrowserCompanion> connected;
    for (const auto& each : lines_->listener.companions()) {
      connected.push_back({tabs::keyOfProgram(each.browser.program), each.companionVersion, each.hostVersion});
    }
    return connected;
  }
  void onChanged(std::function<void()> callback) override { lines_->observer->changed = std::move(callback); }

 private:
  std::shared_ptr<Lines> lines_;
};

std::unique_ptr<BrowserCompanions> LinuxTabScripting::companions() { return std::make_unique<Companions>(lines_); }

const ChangeSignal& LinuxTabScripting::changes() const { return lines_->changes; }

std::unique_ptr<TabScript> LinuxTabScripting::compile(const TabRequest& request, std::string_view) {
  return std::make_unique<Question>(
      [lines = lines_, request] { return answer(lines->listener, *lines->applications, request); });
}

}  // namespace quillmere
