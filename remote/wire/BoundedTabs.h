// How much of the browsers' tabs travels: a browser may have thousands, and a page gives itself whatever title it
// likes.
#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>

#include "state/MixerState.h"

namespace quillmere::wire {

/// Tabs of all browsers together; those behind them do not travel.
inline constexpr std::size_t mostTabs = 20000;
/// Bytes for all titles and addresses together. Where there are many tabs, each has its share.
inline constexpr std::size_t mostTabTextBytes = std::size_t{4} << 20U;

/// The tabs as they travel, with titles and addresses no longer than a place for them could show. [any]
[[nodiscard]] nlohmann::json boundedForm(const BrowserTabs& tabs);

}  // namespace quillmere::wire
