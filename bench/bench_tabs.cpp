// What a poll over the tabs of a browser costs the mixer's main thread: with nothing new, with a new title in every
// tab, and the same while windows follow. The browser's answer is at hand; what it takes to get it is the host's.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "integrations/BrowserTabMonitor.h"
#include "platform/TabScripting.h"
#include "remote/MixerHost.h"
#include "runtime/VirtualTime.h"
#include "state/MixerState.h"

namespace {

using namespace quillmere;

constexpr int tabCount = 500;
constexpr int roundCount = 201;
constexpr auto interval = std::chrono::seconds(3);
constexpr const char* browser = "com.google.Chrome";

/// A browser that has its answer ready.
class Ready final : public TabScripting {
 public:
  std::unique_ptr<TabScript> compile(const TabRequest& /*request*/, std::string_view /*source*/) override {
    return std::make_unique<Script>(text);
  }

  std::string text;

 private:
  class Script final : public TabScript {
   public:
    explicit Script(const std::string& text) : text_(text) {}
    TabScriptResult execute() override { return {text_, std::nullopt}; }

   private:
    const std::string& text_;
  };
};

class NoLog final : public LogSink {
 public:
  void write(LogLevel /*level*/, std::string_view /*subsystem*/, std::string_view /*category*/,
             std::string_view /*message*/) override {}
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
/// A mixer that has tabs, and does nothing.
class TabbedState final : public MixerState {
 public:
#define OPERATION(name, parameters, arguments) \
  void name parameters override {}
#include "state/MixerOperations.def"

  void open(BrowserTabs tabs) { browserTabs_.set(std::move(tabs)); }
};
#pragma GCC diagnostic pop

/// As long as titles and addresses are in everyday use.
std::string tabsText(int round) {
  std::string text;
  for (int tab = 1; tab <= tabCount; ++tab) {
    const auto number = std::to_string(tab);
    text += "1\t" + number + "\t" + (tab == 1 ? "1" : "0") + "\t(" + std::to_string(round) + ") A page with number " +
            number + " and a title of the usual length\thttps://www.example.org/section/page-" + number +
            "?from=somewhere&to=nowhere-in-particular\n";
  }
  return text;
}

/// Milliseconds of the main thread for a poll, the median of the rounds.
double poll(bool changes, bool windowsFollow) {
  VirtualTime time;
  NoLog log;
  Ready scripting;
  const auto runtime = time.runtime(log);
  const BrowserTabMonitor monitor(scripting, runtime);
  TabbedState state;
  std::size_t sent = 0;
  std::optional<MixerHost> host;
  if (windowsFollow) {
    host.emplace(
        state, runtime, [&sent](const nlohmann::json& message) { sent += encodeMessage(message).size(); },
        [] { return false; });
  }
  scripting.text = tabsText(0);
  const auto consumer = startTask(time.main(), [&](TaskContext&) -> Async<void> {
    auto polls = monitor.stream([] { return std::set<std::string>{browser}; }, interval);
    while (auto tabs = co_await polls.next()) state.open(std::move(*tabs));
  });
  time.runUntilIdle();

  std::vector<double> milliseconds;
  for (int round = 1; round <= roundCount; ++round) {
    if (changes) scripting.text = tabsText(round);
    const auto start = std::chrono::steady_clock::now();
    time.advance(interval);
    milliseconds.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  if (state.browserTabs()->at(browser).size() != tabCount || (windowsFollow && sent == 0)) {
    std::fprintf(stderr, "the poll did not arrive\n");
    std::exit(EXIT_FAILURE);
  }
  time.shutDown();
  const auto middle = milliseconds.begin() + roundCount / 2;
  std::nth_element(milliseconds.begin(), middle, milliseconds.end());
  return *middle;
}

void report(const char* name, double milliseconds) {
  std::printf(R"({"name": "tabs, %s", "value": %.3f, "unit": "ms", "target": "value < 1"})"
              "\n",
              name, milliseconds);
}

}  // namespace

int main() {
  report("poll over 500, nothing new", poll(false, false));
  report("poll over 500, new titles", poll(true, false));
  report("poll over 500, new titles, windows follow", poll(true, true));
  return 0;
}
