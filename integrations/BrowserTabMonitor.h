// Asks running browsers which tabs they have open, and reads the text that they answer with.
//
// The text: a record a tab, each ended by a line feed, in the order of windows and tabs. A record has five fields with
// tabs between them: the number of the window and that of the tab within it, in decimal and counted from 1, "1" for the
// window's current tab or "0", the title, the address. A browser that doesn't run or has no window gives the empty
// text.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "integrations/BrowserTab.h"
#include "platform/TabScripting.h"
#include "runtime/Logger.h"
#include "runtime/Runtime.h"
#include "runtime/Stream.h"

namespace quillmere {

class BrowserTabMonitor {
 public:
  using Tabs = std::map<std::string, std::vector<BrowserTab>>;
  using Scripts = std::map<std::string, std::string, std::less<>>;

  /// Both outlive the monitor and its streams.
  BrowserTabMonitor(TabScripting& scripting, const Runtime& runtime);

  /// The script for each browser that is known, by the browser's identifier. [any]
  [[nodiscard]] static const Scripts& scripts();

  /// What a script has answered with; a line that is no record is left out, no text is no tabs. [any]
  [[nodiscard]] static std::vector<BrowserTab> parse(const std::optional<std::string>& text,
                                                     std::string_view browserBundleID);

  /// The tabs of one browser; absent where it is not known or its script fails, with a line in the log. [main]
  [[nodiscard]] std::optional<std::vector<BrowserTab>> queryTabs(const std::string& bundleID) const;

  /// An element each period, changed or not: the tabs of those known browsers that `runningBrowsers` names. One that
  /// fails is left out of its element. `runningBrowsers` and the scripts are run on [main]. A consumer that wants
  /// changes only is told when the scripts may have other answers, and calls for an element where there are other
  /// browsers. [any]
  [[nodiscard]] Stream<Tabs> stream(std::function<std::set<std::string>()> runningBrowsers, Duration interval) const;

 private:
  TabScripting& scripting_;
  Executor& main_;
  Logger log_;
};

}  // namespace quillmere
