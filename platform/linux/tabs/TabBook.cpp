// Reading what a companion tells; nothing of it is believed before it is looked at.
#include "tabs/TabBook.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <utility>

namespace quillmere::tabs {

namespace {

using Json = nlohmann::json;

/// U+0000 to U+001F, U+007F to U+009F, U+2028 and U+2029 at `at`: how many bytes it has; 0 for anything else.
std::size_t controlLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t index) {
    return at + index < text.size() ? static_cast<unsigned char>(text[at + index]) : 0U;
  };
  if (byte(0) < 0x20 || byte(0) == 0x7F) return 1;
  if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0) return 2;
  if (byte(0) == 0xE2 && byte(1) == 0x80 && (byte(2) == 0xA8 || byte(2) == 0xA9)) return 3;
  return 0;
}

/// Valid UTF-8 cut between characters.
std::string_view cut(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U) --most;
  return text.substr(0, most);
}

std::string fit(const std::string& text, std::size_t most) {
  // Cut first: what is thrown away need not be clean.
  return withoutControls(cut(text, most));
}

std::size_t sizeOf(const ToldTab& tab) { return tab.title.size() + tab.url.size(); }

bool isTab(const Json& told) {
  return told.is_array() && told.size() == 4 && told[0].is_number_integer() && told[1].is_number_integer() &&
         told[2].is_string() && told[3].is_string();
}

std::optional<ToldWindow> readWindow(const Json& told) {
  if (!told.is_array() || told.size() != 2 || !told[0].is_number_integer() || !told[1].is_array()) return std::nullopt;
  ToldWindow window{told[0].get<WindowID>(), {}};
  for (const auto& tab : told[1]) {
    if (!tab.is_number_integer()) return std::nullopt;
    window.tabs.push_back(tab.get<TabID>());
  }
  return window;
}

std::optional<std::vector<std::pair<TabID, ToldTab>>> readTabs(const Json& told) {
  if (!told.is_array()) return std::nullopt;
  std::vector<std::pair<TabID, ToldTab>> tabs;
  for (const auto& each : told) {
    if (!isTab(each)) return std::nullopt;
    tabs.emplace_back(each[0].get<TabID>(), ToldTab{each[1].get<std::int64_t>() == 1,
                                                    fit(each[2].get_ref<const std::string&>(), longestTitle),
                                                    fit(each[3].get_ref<const std::string&>(), longestUrl)});
  }
  return tabs;
}

std::optional<std::vector<ToldWindow>> readWindows(const Json& told) {
  if (!told.is_array()) return std::nullopt;
  std::vector<ToldWindow> windows;
  for (const auto& each : told) {
    auto window = readWindow(each);
    if (!window) return std::nullopt;
    windows.push_back(std::move(*window));
  }
  return windows;
}

std::size_t countTabs(const std::vector<ToldWindow>& windows) {
  std::size_t count = 0;
  for (const auto& window : windows) count += window.tabs.size();
  return count;
}

bool namesATabTwice(const std::vector<ToldWindow>& windows) {
  std::unordered_set<TabID> named;
  for (const auto& window : windows) {
    if (!std::ranges::all_of(window.tabs, [&](TabID tab) { return named.insert(tab).second; })) return true;
  }
  return false;
}

}  // namespace

std::string withoutControls(std::string_view text) {
  std::string clean;
  clean.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto length = controlLength(text, at);
    clean += length > 0 ? ' ' : text[at];
    at += length > 0 ? length : 1;
  }
  return clean;
}

std::optional<TabNews> readTabNews(const std::string& message, std::string& problem) {
  const auto told = Json::parse(message, nullptr, false);
  if (!told.is_object()) {
    problem = "what it tells is no object";
    return std::nullopt;
  }
  TabNews news;
  if (const auto found = told.find("tabs"); found != told.end()) {
    auto tabs = readTabs(*found);
    if (!tabs) {
      problem = "its tabs are no tabs";
      return std::nullopt;
    }
    news.tabs = std::move(*tabs);
  }
  if (const auto found = told.find("windows"); found != told.end()) {
    news.windows = readWindows(*found);
    if (!news.windows) {
      problem = "its windows are no windows";
      return std::nullopt;
    }
  }
  return news;
}

std::optional<std::string> TabBook::take(TabNews news) {
  if (news.windows && (news.windows->size() > mostWindows || countTabs(*news.windows) > mostTabs)) {
    return "it has too many windows or tabs";
  }
  // The text of a tab counts once, so the tab stands in the answers once.
  if (news.windows && namesATabTwice(*news.windows)) return "it has a tab in two places";
  // What a new text takes the place of is not taken off: a companion that is that near to the limit is none.
  std::size_t count = tabs_.size();
  std::size_t text = textBytes_;
  for (const auto& [id, tab] : news.tabs) {
    if (!tabs_.contains(id)) ++count;
    text += sizeOf(tab);
  }
  if (count > mostTabs || text > mostText) return "it tells too much";
  for (auto& [id, tab] : news.tabs) put(id, std::move(tab));
  if (news.windows) {
    windows_ = std::move(*news.windows);
    forgetTabsOfNoWindow();
  }
  return std::nullopt;
}

const ToldTab* TabBook::tab(TabID id) const {
  const auto found = tabs_.find(id);
  return found != tabs_.end() ? &found->second : nullptr;
}

void TabBook::put(TabID id, ToldTab tab) {
  auto& place = tabs_[id];
  textBytes_ -= sizeOf(place);
  textBytes_ += sizeOf(tab);
  place = std::move(tab);
}

void TabBook::forgetTabsOfNoWindow() {
  std::unordered_set<TabID> open;
  for (const auto& window : windows_) open.insert(window.tabs.begin(), window.tabs.end());
  std::erase_if(tabs_, [&](const auto& each) {
    if (open.contains(each.first)) return false;
    textBytes_ -= sizeOf(each.second);
    return true;
  });
}

}  // namespace quillmere::tabs
