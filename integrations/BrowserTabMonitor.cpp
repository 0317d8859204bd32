// Two kinds of scripts, one form of text.
#include "integrations/BrowserTabMonitor.h"

#include <array>
#include <cstddef>
#include <utility>

#include "core/DecimalInteger.h"
#include "core/Trimmed.h"
#include "runtime/Poll.h"
#include "scripting/ScriptError.h"

namespace quillmere {

namespace {

/// `currentTab` and `title` are what the browser calls them.
std::string queryScript(const std::string& name, const std::string& currentTab, const std::string& title) {
  return "if application \"" + name + "\" is not running then return \"\"\n" +  //
         "tell application \"" + name + "\"\n" +
         R"(    set output to ""
    set wIdx to 0
    repeat with w in windows
        set wIdx to wIdx + 1
        set tIdx to 0
        try
            set activeT to )" +
         currentTab + R"( of w
        on error
            set activeT to missing value
        end try
        repeat with t in tabs of w
            set tIdx to tIdx + 1
            set isActive to "0"
            try
                if t = activeT then set isActive to "1"
            end try
            set tTitle to ""
            try
                set tTitle to )" +
         title + R"( of t
            end try
            set tURL to ""
            try
                set tURL to URL of t
            end try
)" +
         "            set output to output & wIdx & \"\t\" & tIdx & \"\t\" & isActive & \"\t\" & tTitle & \"\t\" & tURL"
         " & linefeed\n" +
         R"(        end repeat
    end repeat
    return output
end tell)";
}

std::string chromiumScript(const std::string& name) { return queryScript(name, "active tab", "title"); }

std::string safariScript(const std::string& name) { return queryScript(name, "current tab", "name"); }

constexpr std::size_t fieldCount = 5;

/// The fields of a record; the last one takes the rest of the line. Absent where there are fewer.
std::optional<std::array<std::string_view, fieldCount>> fieldsOf(std::string_view line) {
  std::array<std::string_view, fieldCount> fields;
  for (std::size_t field = 0; field + 1 < fieldCount; ++field) {
    const auto tab = line.find('\t');
    if (tab == std::string_view::npos) return std::nullopt;
    fields.at(field) = line.substr(0, tab);
    line.remove_prefix(tab + 1);
  }
  fields.back() = line;
  return fields;
}

std::optional<BrowserTab> tabFrom(std::string_view line, std::string_view browserBundleID) {
  const auto fields = fieldsOf(line);
  if (!fields) return std::nullopt;
  const auto& [windowText, tabText, activeText, titleText, address] = *fields;
  const auto window = decimalInteger(windowText);
  const auto number = decimalInteger(tabText);
  if (!window || !number) return std::nullopt;

  const auto title = trimmed(titleText);
  BrowserTab tab;
  tab.browserBundleID = browserBundleID;
  tab.id = tab.browserBundleID + ":w" + std::to_string(*window) + ":t" + std::to_string(*number);
  tab.title = title.empty() ? address : title;
  tab.urlString = address;
  tab.isActive = activeText == "1";
  return tab;
}

}  // namespace

BrowserTabMonitor::BrowserTabMonitor(TabScripting& scripting, const Runtime& runtime)
    : scripting_(scripting), main_(runtime.main), log_(runtime.log, "BrowserTabMonitor") {}

const BrowserTabMonitor::Scripts& BrowserTabMonitor::scripts() {
  static const Scripts scripts{
      {"com.google.Chrome", chromiumScript("Google Chrome")},
      {"com.brave.Browser", chromiumScript("Brave Browser")},
      {"company.thebrowser.Browser", chromiumScript("Arc")},
      {"com.microsoft.edgemac", chromiumScript("Microsoft Edge")},
      {"com.apple.Safari", safariScript("Safari")},
  };
  return scripts;
}

std::vector<BrowserTab> BrowserTabMonitor::parse(const std::optional<std::string>& text,
                                                 std::string_view browserBundleID) {
  std::vector<BrowserTab> tabs;
  std::string_view rest = text ? std::string_view(*text) : std::string_view();
  while (!rest.empty()) {
    const auto end = rest.find('\n');
    if (auto tab = tabFrom(rest.substr(0, end), browserBundleID)) tabs.push_back(std::move(*tab));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return tabs;
}

std::optional<std::vector<BrowserTab>> BrowserTabMonitor::queryTabs(const std::string& bundleID) const {
  const auto source = scripts().find(bundleID);
  if (source == scripts().end()) return std::nullopt;
  const auto script = scripting_.compile({TabRequest::Kind::query, bundleID}, source->second);
  if (!script) {
    log_.error("could not compile AppleScript for " + bundleID);
    return std::nullopt;
  }
  const auto result = script->execute();
  if (result.error) {
    log_.standard("AppleScript [" + bundleID + "] err " + std::to_string(result.error->number) + " — " +
                  messageOf(*result.error));
    return std::nullopt;
  }
  auto tabs = parse(result.text, bundleID);
  log_.info("queryTabs " + bundleID + " → " + std::to_string(tabs.size()) + " tab(s)");
  return tabs;
}

Stream<BrowserTabMonitor::Tabs> BrowserTabMonitor::stream(std::function<std::set<std::string>()> runningBrowsers,
                                                          Duration interval) const {
  return Stream<Tabs>::produce(main_,
                               [monitor = *this, runningBrowsers = std::move(runningBrowsers), interval](
                                   TaskContext& task, Stream<Tabs>::Writer& writer) -> Async<void> {
                                 const auto look = [&monitor, &runningBrowsers] {
                                   Tabs tabs;
                                   for (const auto& bundleID : runningBrowsers()) {
                                     if (auto open = monitor.queryTabs(bundleID))
                                       tabs.emplace(bundleID, std::move(*open));
                                   }
                                   return tabs;
                                 };
                                 const ChangeWatch watch({&monitor.scripting_.changes()});
                                 co_await poll<Tabs>(task, writer, interval, watch, look);
                               });
}

}  // namespace quillmere
