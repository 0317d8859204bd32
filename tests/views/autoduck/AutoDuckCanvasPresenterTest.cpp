// What the page of Auto-Duck shows.
#include "views/autoduck/AutoDuckCanvasPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class AutoDuckPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<AutoDuckCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }

  std::unique_ptr<AutoDuckCanvasPresenter> page;
};

TEST_F(AutoDuckPage, DuckTargetIsCutNotRounded) {
  startViews();
  make();
  page->duck()->setTarget(0.305);
  EXPECT_EQ(page->duck()->targetText(), "30%");
  EXPECT_FLOAT_EQ(state().duckRule()->targetGain, 0.305F);
}

TEST_F(AutoDuckPage, RestoreDelayIsCutToMilliseconds) {
  startViews();
  make();
  EXPECT_EQ(page->duck()->delayText(), "1500 ms");
  page->duck()->setDelay(0.5);
  EXPECT_EQ(page->duck()->delayText(), "2500 ms");
  EXPECT_EQ(state().duckRule()->restoreDelayMillis, 2500);
}

TEST_F(AutoDuckPage, DuckListsNameWhatIsKnownAndCountInTheRightNumber) {
  startWithSounding({});
  make();
  auto rule = *state().duckRule();
  rule.triggerBundleIDs = {zoom};
  rule.duckedBundleIDs = {};
  state().setDuckRule(rule);
  EXPECT_EQ(page->duck()->triggerNames(), "Zoom");
  EXPECT_EQ(page->duck()->triggerCountText(), "1 app");
  EXPECT_EQ(page->duck()->duckedCountText(), "0 apps");
}

TEST_F(AutoDuckPage, DuckListsCountWhatHasNoName) {
  startWithSounding({});
  make();
  auto rule = *state().duckRule();
  rule.triggerBundleIDs = {zoom, "org.example.unheard", "org.example.unknown"};
  rule.duckedBundleIDs = {"org.example.unheard"};
  state().setDuckRule(rule);
  EXPECT_EQ(page->duck()->triggerNames(), "Zoom, + 2 more");
  EXPECT_EQ(page->duck()->duckedNames(), "");
  EXPECT_EQ(page->duck()->duckedCountText(), "1 app");
}

TEST_F(AutoDuckPage, DuckCardFollowsTheCall) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(page->duck()->statusText(), "Standing by");
  microphone(zoom, true);
  EXPECT_EQ(page->duck()->statusText(), "Ducking now");
}

}  // namespace
}  // namespace quillmere
