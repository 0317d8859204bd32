// Cuts what is long, copies nothing else.
#include "wire/BoundedTabs.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "core/Shortened.h"
#include "wire/Forms.h"

namespace quillmere::wire {

using nlohmann::json;

json boundedForm(const BrowserTabs& tabs) {
  std::size_t count = 0;
  for (const auto& [bundleID, open] : tabs) count += open.size();
  const auto travelling = std::clamp<std::size_t>(count, 1, mostTabs);
  const auto share = mostTabTextBytes / (2 * travelling);
  const auto titleBytes = std::min(share, longestShownTitle);
  const auto addressBytes = std::min(share, longestShownAddress);

  auto form = json::object();
  std::size_t left = mostTabs;
  for (const auto& [bundleID, open] : tabs) {
    auto list = json::array();
    for (const auto& tab : open) {
      if (left == 0) break;
      --left;
      if (tab.title.size() <= titleBytes && tab.urlString.size() <= addressBytes) {
        list.push_back(tab);
      } else {
        list.push_back(BrowserTab{tab.id, tab.browserBundleID, shortened(tab.title, titleBytes),
                                  std::string(shortenedAddress(tab.urlString, addressBytes)), tab.isActive});
      }
    }
    form[bundleID] = std::move(list);
  }
  return form;
}

}  // namespace quillmere::wire
