// What one browser's companion has told of its windows and tabs, kept up by what it tells anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillmere::tabs {

/// Numbers of the browser's own.
using WindowID = std::int64_t;
using TabID = std::int64_t;

struct ToldTab {
  bool isActive = false;
  std::string title;
  std::string url;
};

struct ToldWindow {
  WindowID id = 0;
  std::vector<TabID> tabs;
};

/// A control character, a line's or a paragraph's end is a blank of its own: what divides fields and records can't be
/// in a field, and nothing else of a page's title changes. Takes and gives UTF-8. [any]
[[nodiscard]] std::string withoutControls(std::string_view text);

/// What a companion tells at once.
struct TabNews {
  /// They come to those that are known.
  std::vector<std::pair<TabID, ToldTab>> tabs;
  /// They replace all that were known.
  std::optional<std::vector<ToldWindow>> windows;
};

/// Bytes of a title and of an address; longer ones are cut between characters. A companion cuts them earlier.
inline constexpr std::size_t longestTitle = 16'384;
inline constexpr std::size_t longestUrl = 8192;

/// Reads {"tabs": [[id, 1 or 0, title, address], ...], "windows": [[id, [tab id, ...]], ...]}, either of them or both;
/// what else there is doesn't count. Absent for anything else; `problem` then says what is wrong. [any]
[[nodiscard]] std::optional<TabNews> readTabNews(const std::string& message, std::string& problem);

/// One thread at a time. [any]
class TabBook {
 public:
  static constexpr std::size_t mostWindows = 2000;
  static constexpr std::size_t mostTabs = 20'000;
  /// Bytes of all titles and addresses.
  static constexpr std::size_t mostText = std::size_t{16} << 20U;

  /// A tab that is in no window is forgotten with the next windows. Why the news can't be taken, if they can't: then
  /// nothing has changed.
  [[nodiscard]] std::optional<std::string> take(TabNews news);

  /// In the browser's order.
  [[nodiscard]] const std::vector<ToldWindow>& windows() const { return windows_; }
  /// Null for one that was named but never told.
  [[nodiscard]] const ToldTab* tab(TabID id) const;
  [[nodiscard]] std::size_t textBytes() const { return textBytes_; }

 private:
  void put(TabID id, ToldTab tab);
  void forgetTabsOfNoWindow();

  std::vector<ToldWindow> windows_;
  std::unordered_map<TabID, ToldTab> tabs_;
  std::size_t textBytes_ = 0;
};

}  // namespace quillmere::tabs
