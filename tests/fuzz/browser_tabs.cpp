// The text of a browser's tabs: whatever it holds, what is read of it keeps the form's promises, comes out the same
// when it is written again, is shown clean, and leads back to its place in the browser.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/OneLine.h"
#include "core/Shortened.h"
#include "core/Trimmed.h"
#include "integrations/BrowserTabActivator.h"
#include "integrations/BrowserTabMonitor.h"
#include "platform/memory/MemoryTabScripting.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace {

using quillmere::BrowserTab;
using quillmere::BrowserTabMonitor;

constexpr std::string_view browser = "com.google.Chrome";

void require(bool holds) {
  if (!holds) std::abort();
}

std::vector<BrowserTab> parse(std::string_view text) { return BrowserTabMonitor::parse(std::string(text), browser); }

struct Numbers {
  std::string window;
  std::string tab;
};

Numbers numbersIn(const std::string& id) {
  const auto start = browser.size() + 2;
  require(id.starts_with(std::string(browser) + ":w"));
  const auto middle = id.find(":t", start);
  require(middle != std::string::npos);
  return {id.substr(start, middle - start), id.substr(middle + 2)};
}

std::string record(const BrowserTab& tab) {
  const auto [window, number] = numbersIn(tab.id);
  // An address in the title's place stands for no title.
  const auto& title = tab.title == tab.urlString ? std::string() : tab.title;
  return window + "\t" + number + "\t" + (tab.isActive ? "1" : "0") + "\t" + title + "\t" + tab.urlString + "\n";
}

void checkTab(const BrowserTab& tab) {
  require(tab.browserBundleID == browser);
  require(tab.urlString.find('\n') == std::string::npos);
  require(!tab.title.empty() || tab.urlString.empty());
  if (tab.title != tab.urlString) {
    require(quillmere::trimmed(tab.title) == tab.title);
    require(tab.title.find('\t') == std::string::npos);
  }
  require(parse(record(tab)) == std::vector{tab});

  const auto shown = quillmere::oneLine(quillmere::shortened(tab.title, quillmere::longestShownTitle));
  require(shown.size() <= quillmere::longestShownTitle);
  require(std::ranges::none_of(shown, [](char byte) { return static_cast<unsigned char>(byte) < 0x20; }));
  require(quillmere::shortenedAddress(tab.urlString, quillmere::longestShownAddress).size() <=
          quillmere::longestShownAddress);
}

void checkActivation(const BrowserTab& tab) {
  quillmere::VirtualTime time;
  quillmere::RecordingLogSink log;
  quillmere::MemoryTabScripting scripting;
  const quillmere::BrowserTabActivator activator(scripting, time.runtime(log));
  activator.activate(std::string(browser), tab);
  time.runUntilIdle();
  const auto asked = scripting.activations();
  require(asked.size() == 1);
  const auto [window, number] = numbersIn(tab.id);
  require(std::to_string(asked.front().request.window) == window);
  require(std::to_string(asked.front().request.tab) == number);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto tabs = parse(text);
  for (const auto& tab : tabs) checkTab(tab);
  if (!tabs.empty()) checkActivation(tabs.back());

  // Lines are read one by one: what stands before a line feed has no say in what stands behind it.
  const auto end = text.find('\n', size / 2);
  if (end != std::string_view::npos) {
    auto pieces = parse(text.substr(0, end));
    const auto rest = parse(text.substr(end));
    pieces.insert(pieces.end(), rest.begin(), rest.end());
    require(pieces == tabs);
  }
  return 0;
}
