// One open tab of a browser, named by where it stands at the time of the poll.
// Compared field by field.
#pragma once

#include <string>

namespace quillmere {

struct BrowserTab {
  /// The browser's identifier, ":w" and the window's number, ":t" and the tab's, both counted from 1.
  std::string id;
  std::string browserBundleID;
  /// The trimmed title, or the address where that is empty.
  std::string title;
  /// The address as the browser gives it.
  std::string urlString;
  /// The current tab of its window.
  bool isActive = false;

  friend bool operator==(const BrowserTab&, const BrowserTab&) = default;
};

}  // namespace quillmere
