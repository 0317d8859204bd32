// What the feed of releases says, and what an earlier run has kept of it: a version is digits and dots or it is none,
// and the feed is asked once a day whatever it says.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/VersionOrder.h"
#include "integrations/ReleaseUpdater.h"
#include "platform/memory/MemoryReleaseFeed.h"
#include "platform/memory/MemoryUserDefaults.h"
#include "platform/memory/MemoryWorkspace.h"
#include "runtime/VirtualTime.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "support/Silence.h"

namespace {

using namespace quillmere;

bool isVersion(const std::string& text) {
  return !text.empty() && text.size() <= 64 && text.front() != '.' &&
         text.find_first_not_of("0123456789.") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  fuzz::Silence log;
  VirtualTime time;
  MemoryReleaseFeed feed;
  MemoryUserDefaults defaults;
  MemoryWorkspace workspace;
  if (in.flag()) {
    defaults.set(ReleaseUpdater::checkedKey, in.flag() ? DefaultsValue(in.number<double>()) : DefaultsValue(true));
  }
  if (in.flag()) defaults.set(ReleaseUpdater::versionKey, std::string(in.text()));
  const auto kept = defaults.string(ReleaseUpdater::versionKey);

  ReleaseUpdater updater(feed, defaults, workspace, time.runtime(log));
  QUILLMERE_REQUIRE(*updater.latestVersion() == (kept && isVersion(*kept) ? kept : std::nullopt));
  updater.start();
  time.advance(std::chrono::hours(25));
  QUILLMERE_REQUIRE(feed.fetches() == 1 || feed.fetches() == 2);

  const auto before = *updater.latestVersion();
  const std::string text(in.rest());
  std::string problem;
  const auto told = versionInFeed(text, problem);
  QUILLMERE_REQUIRE(told.has_value() != !problem.empty());
  if (told) {
    QUILLMERE_REQUIRE(isVersion(*told));
    // What is announced can be put in an order with ours.
    for (const auto& other : {std::string("1.0"), kept.value_or("")}) {
      QUILLMERE_REQUIRE(!isOutdated(*told, other) || !isOutdated(other, *told));
    }
    QUILLMERE_REQUIRE(!isOutdated(*told, *told));
  }
  feed.answer(text);
  time.runUntilIdle();
  QUILLMERE_REQUIRE(*updater.latestVersion() == (told ? told : before));
  QUILLMERE_REQUIRE(!told || defaults.string(ReleaseUpdater::versionKey) == told);
  const int asked = feed.fetches();
  time.advance(std::chrono::hours(72));
  QUILLMERE_REQUIRE(feed.fetches() > asked && feed.fetches() <= asked + 4);
  return 0;
}
