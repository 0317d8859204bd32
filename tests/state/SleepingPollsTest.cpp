// While nothing changes nobody looks, and what goes by the clock alone happens when it would have.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class SleepingPolls : public StateFixture {
 protected:
  /// All questions to the machine so far.
  [[nodiscard]] int questions() const {
    return static_cast<int>(box->audio.calls().size()) + box->workspace.listingCount() +
           box->player.infoRequestCount() + static_cast<int>(box->browsers.executed().size());
  }
  /// How many milliseconds `bundleID` stays live from now on, in steps of one.
  long long millisLive(const std::string& bundleID) const {
    long long millis = 0;
    for (; state().liveBundleIDs()->contains(bundleID); ++millis) box->time.advance(std::chrono::milliseconds(1));
    return millis;
  }
};

TEST_F(SleepingPolls, WithTwentySilentApplicationsListedNobodyAsksTheMachineAnything) {
  for (int number = 0; number < 20; ++number) {
    box->launch("org.example.silent" + std::to_string(number), "Silent " + std::to_string(number));
  }
  box->start();
  box->advanceSeconds(10);
  ASSERT_EQ(state().apps()->size(), 20U);
  const auto before = questions();
  box->advanceSeconds(3600);
  EXPECT_EQ(questions(), before);
}

TEST_F(SleepingPolls, WhereTheMachineCannotTellEverybodyAsksAsEver) {
  box->tellChanges(false);
  startWithThree();
  const auto before = box->workspace.listingCount();
  box->advanceSeconds(3);
  EXPECT_GE(box->workspace.listingCount(), before + 20);
}

TEST_F(SleepingPolls, AnApplicationThatSoundsUnchangedKeepsNobodyAwake) {
  startWithThree();
  box->setSounding(spotify, true);
  box->advanceSeconds(10);
  const auto before = questions();
  box->advanceSeconds(3600);
  EXPECT_EQ(questions(), before);
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
}

TEST_F(SleepingPolls, AnApplicationThatFallsSilentAfterALongSleepIsLiveForAsLongAsIfAllLooksHadBeenMade) {
  startWithThree();
  box->setSounding(spotify, true);
  // Looks are made every 150 ms: the last one that would have heard it is at 600.0 s.
  box->advanceSeconds(600.01);
  box->setSounding(spotify, false);
  const auto sleeping = millisLive(spotify);
  EXPECT_GE(sleeping, 1500);

  power();
  box->tellChanges(false);
  startWithThree();
  box->setSounding(spotify, true);
  box->advanceSeconds(600.01);
  box->setSounding(spotify, false);
  EXPECT_EQ(sleeping, millisLive(spotify));
}

TEST_F(SleepingPolls, AWallClockThatIsSetWhileAllSleepCountsForTheTimeFromThenOn) {
  startWithThree();
  box->setSounding(spotify, true);
  box->advanceSeconds(60);
  box->time.jumpWallClock(3600);
  box->advanceSeconds(60.01);
  box->setSounding(spotify, false);
  EXPECT_GE(millisLive(spotify), 1500);
}

TEST_F(SleepingPolls, AWallClockThatIsSetSinceTheLastLookThatWasLeftOutIsAsIfThatLookHadBeenMade) {
  startWithThree();
  box->setSounding(spotify, true);
  box->advanceSeconds(60.01);
  box->time.jumpWallClock(3600);
  box->setSounding(spotify, false);
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), IsEmpty()) << "it was last heard an hour ago";
}

TEST_F(SleepingPolls, ABrowserThatIsListedAfterALongSleepShowsItsTabsAtTheNextTurn) {
  box->browsers.setText(chrome, "1\t1\t1\tTitle\thttps://example.org/\n");
  startWithThree();
  box->advanceSeconds(3601);
  box->launch(chrome, "Chrome");
  box->advanceSeconds(1.9);
  EXPECT_TRUE(state().browserTabs()->empty());
  box->advanceSeconds(0.2);
  EXPECT_EQ(state().browserTabs()->count(chrome), 1U);
}

TEST_F(SleepingPolls, APlayerThatGoesOnInSpiteOfTheKeyIsNotStartedAgainWhenTheDeviceIsBack) {
  const auto headset = box->addHeadset();
  box->audio.setDefaultOutput(headset);
  startWithThree();
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->advanceSeconds(3600);
  box->audio.removeDevice(headset);
  settle();
  ASSERT_EQ(box->keys.pressed().size(), 1U);
  // The player has not listened: a look finds that, and what is paused later is the user's doing.
  box->advanceSeconds(2);
  box->player.setTrack("Song", false, box->pidOf(spotify));
  box->advanceSeconds(2);
  box->addHeadset();
  box->advanceSeconds(5);
  EXPECT_EQ(box->keys.pressed().size(), 1U);
}

TEST_F(SleepingPolls, ATapThatHearsAnApplicationIsLookedAtUntilItsCyclesStop) {
  box->tapForReal();
  startWithThree();
  box->audio.setCycles(std::chrono::milliseconds(30), 0.25F);
  state().setGain(0.5F, spotify);
  box->setSounding(spotify, true);
  box->advanceSeconds(5.01);
  const auto before = box->workspace.listingCount();
  box->advanceSeconds(3);
  EXPECT_EQ(box->workspace.listingCount(), before + 20) << "cycles stop without a word";
  box->setSounding(spotify, false);
  box->advanceSeconds(5);
  EXPECT_THAT(*state().liveBundleIDs(), Not(Contains(spotify)));
  const auto asleep = box->workspace.listingCount();
  box->advanceSeconds(3600);
  EXPECT_EQ(box->workspace.listingCount(), asleep);
}

}  // namespace
}  // namespace quillmere
