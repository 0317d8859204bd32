// The views' own settings: defaults, observers, what is written.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;

class ViewSettings : public StateFixture {};

TEST_F(ViewSettings, BothAreOnWhereNothingIsStoredAndNothingIsWritten) {
  box->start();
  EXPECT_TRUE(*state().scrollOverRowAdjustsVolume());
  EXPECT_TRUE(*state().showDuckBanner());
  EXPECT_FALSE(disk.object("scrollOverRowAdjustsVolume"));
  EXPECT_FALSE(disk.object("showDuckBanner"));
}

TEST_F(ViewSettings, AChangeIsStoredToldAndThereAtTheNextStart) {
  startWithThree();
  std::vector<bool> told;
  const auto watch = state().showDuckBanner().observe([&](bool shows) { told.push_back(shows); });
  state().setShowDuckBanner(false);
  state().setShowDuckBanner(false);
  state().setScrollOverRowAdjustsVolume(false);
  EXPECT_THAT(told, ElementsAre(false));
  EXPECT_THAT(disk.written(), ElementsAre("showDuckBanner", "scrollOverRowAdjustsVolume"));
  restart({});
  EXPECT_FALSE(*state().showDuckBanner());
  EXPECT_FALSE(*state().scrollOverRowAdjustsVolume());
}

TEST_F(ViewSettings, AValueOfAnotherTypeCountsAsOn) {
  disk.set("showDuckBanner", std::string("no"));
  disk.set("scrollOverRowAdjustsVolume", 0.0);
  box->start();
  EXPECT_TRUE(*state().showDuckBanner());
  EXPECT_TRUE(*state().scrollOverRowAdjustsVolume());
}

}  // namespace
}  // namespace quillmere
