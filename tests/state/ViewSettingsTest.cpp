// The views' own settings: defaults, observers, what is written.
#include "state/ViewSettings.h"

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ViewSettings, BothAreOnWhereNothingIsStoredAndNothingIsWritten) {
  RecordingDefaults disk;
  const ViewSettings settings(disk);
  EXPECT_TRUE(*settings.scrollOverRowAdjustsVolume());
  EXPECT_TRUE(*settings.showDuckBanner());
  EXPECT_THAT(disk.values(), IsEmpty());
}

TEST(ViewSettings, AChangeIsStoredToldAndThereAtTheNextStart) {
  RecordingDefaults disk;
  ViewSettings settings(disk);
  std::vector<bool> told;
  const auto watch = settings.showDuckBanner().observe([&](bool shows) { told.push_back(shows); });
  settings.setShowDuckBanner(false);
  settings.setShowDuckBanner(false);
  settings.setScrollOverRowAdjustsVolume(false);
  EXPECT_THAT(told, ElementsAre(false));
  EXPECT_THAT(disk.written(), ElementsAre("showDuckBanner", "scrollOverRowAdjustsVolume"));
  const ViewSettings next(disk);
  EXPECT_FALSE(*next.showDuckBanner());
  EXPECT_FALSE(*next.scrollOverRowAdjustsVolume());
}

TEST(ViewSettings, AValueOfAnotherTypeCountsAsAbsent) {
  RecordingDefaults disk({{"showDuckBanner", std::string("no")}, {"scrollOverRowAdjustsVolume", 0.0}});
  const ViewSettings settings(disk);
  EXPECT_TRUE(*settings.showDuckBanner());
  EXPECT_TRUE(*settings.scrollOverRowAdjustsVolume());
}

}  // namespace
}  // namespace quillmere
