// Browsers as a page shows them, and the way to change them.
#include "integrations/CompanionSetUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "platform/memory/MemoryBrowserSetUp.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SetUp : public ::testing::Test {
 protected:
  SetUp() { system.setBrowsers({{"chromium", "Chromium", false}, {"edge", "Microsoft Edge", true}}); }
  ~SetUp() override {
    page.reset();
    time.shutDown();
  }
  CompanionSetUp& made() {
    if (!page) page.emplace(&system, time.runtime(log));
    return *page;
  }
  [[nodiscard]] std::vector<bool> hosts() const {
    std::vector<bool> hosts;
    for (const auto& each : page->browsers().get()) hosts.push_back(each.hasHost);
    return hosts;
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryBrowserSetUp system;
  std::optional<CompanionSetUp> page;
};

TEST_F(SetUp, NobodyLooksForBrowsersBeforeAPageAsks) {
  made();
  time.runUntilIdle();
  EXPECT_THAT(hosts(), IsEmpty());
  made().refresh();
  time.runUntilIdle();
  EXPECT_THAT(hosts(), ElementsAre(false, true));
}

TEST_F(SetUp, AChangeIsFollowedByALook) {
  made().install("chromium");
  time.runUntilIdle();
  EXPECT_THAT(hosts(), ElementsAre(true, true));
  made().remove("edge");
  time.runUntilIdle();
  EXPECT_THAT(hosts(), ElementsAre(true, false));
}

TEST_F(SetUp, ChangesAreMadeInTheirOrder) {
  made().install("chromium");
  made().remove("chromium");
  time.runUntilIdle();
  EXPECT_THAT(hosts(), ElementsAre(false, true));
}

TEST_F(SetUp, AChangeThatFailsIsLoggedAndShownAsItIs) {
  system.setFailure("the disk is full");
  made().install("chromium");
  time.runUntilIdle();
  EXPECT_THAT(hosts(), ElementsAre(false, true));
  EXPECT_THAT(log.messages(), ElementsAre("a browser could not be set up: the disk is full"));
}

TEST_F(SetUp, APageThatHasGoneIsToldNothing) {
  made().install("chromium");
  page.reset();
  time.runUntilIdle();
  EXPECT_TRUE(system.browsers().front().hasHost);
}

TEST_F(SetUp, WithoutASystemThereAreNoBrowsers) {
  page.emplace(nullptr, time.runtime(log));
  page->refresh();
  page->install("chromium");
  time.runUntilIdle();
  EXPECT_THAT(hosts(), IsEmpty());
  EXPECT_EQ(page->companionFolder(), "");
}

}  // namespace
}  // namespace quillmere
