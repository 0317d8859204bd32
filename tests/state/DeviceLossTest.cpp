// Device-loss pause: when the key is pressed, what is waited for, when it is pressed again.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DeviceLoss : public StateFixture {
 protected:
  void SetUp() override {
    headset = box->addHeadset();
    box->audio.setDefaultOutput(headset);
    startWithThree();
    box->keys.setOnPress([this](std::int32_t) {
      if (playerObeys) setPlaying(!playing);
    });
  }
  /// The player plays or pauses; the state notices with its next poll.
  void setPlaying(bool plays) {
    playing = plays;
    box->player.setTrack("Song", plays, box->pidOf(spotify));
  }
  void play() {
    setPlaying(true);
    box->advanceSeconds(1);
  }
  void unplug() {
    box->audio.removeDevice(headset);
    settle();
  }
  void plug() {
    headset = box->addHeadset();
    settle();
  }
  [[nodiscard]] const std::vector<std::int32_t>& keys() const { return box->keys.pressed(); }

  AudioObjectID headset = 0;
  bool playing = false;
  bool playerObeys = true;
};

TEST_F(DeviceLoss, UnpluggingTheHeadsetPausesAndPluggingItInResumes) {
  play();
  unplug();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  EXPECT_FALSE(playing);
  box->advanceSeconds(5);
  plug();
  box->time.advance(std::chrono::milliseconds(799));
  EXPECT_THAT(keys(), ElementsAre(mediakey::play)) << "the device gets time to become the output";
  box->time.advance(std::chrono::milliseconds(1));
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
  EXPECT_TRUE(playing);
}

TEST_F(DeviceLoss, ThePressesSayWhatTheyAreFor) {
  using enum mediakey::Purpose;
  play();
  unplug();
  EXPECT_THAT(box->keys.purposes(), ElementsAre(pause));
  box->advanceSeconds(5);
  plug();
  box->advanceSeconds(1);
  EXPECT_THAT(box->keys.purposes(), ElementsAre(pause, resume));
}

TEST_F(DeviceLoss, APauseIsResumedThoughTheTitleGoesMeanwhile) {
  using enum mediakey::Purpose;
  play();
  unplug();
  box->player.setInfo(std::nullopt);
  box->advanceSeconds(5);
  ASSERT_FALSE(*state().nowPlaying());
  plug();
  box->advanceSeconds(1);
  EXPECT_THAT(box->keys.purposes(), ElementsAre(pause, resume));
}

TEST_F(DeviceLoss, AnotherReturnOfTheDeviceDoesNothing) {
  play();
  unplug();
  box->advanceSeconds(2);
  // The player stays paused, so nothing but the first return ends the waiting.
  playerObeys = false;
  plug();
  box->advanceSeconds(2);
  ASSERT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
  box->keys.clear();
  unplug();
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(DeviceLoss, ADeviceThatFlickersOnItsReturnResumesOnce) {
  play();
  unplug();
  box->advanceSeconds(2);
  plug();
  box->time.advance(std::chrono::milliseconds(100));
  unplug();
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play)) << "one key more would have stopped it again";
  EXPECT_TRUE(playing);
}

TEST_F(DeviceLoss, WithTheFeatureOffNoPathPressesOrWaits) {
  state().setPauseOnHeadphoneDisconnect(false);
  play();
  state().setRouting("headset", spotify);
  unplug();
  EXPECT_THAT(keys(), IsEmpty());
  // Paused by hand before a poll clears what may be waited for: a device that was waited for would resume it.
  setPlaying(false);
  box->advanceSeconds(1);
  state().setPauseOnHeadphoneDisconnect(true);
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), IsEmpty()) << "nothing was pending";
}

TEST_F(DeviceLoss, SwitchingTheFeatureOffIgnoresTheReturnAndSwitchingItOnArmsItAgain) {
  play();
  unplug();
  box->advanceSeconds(2);
  state().setPauseOnHeadphoneDisconnect(false);
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  state().setPauseOnHeadphoneDisconnect(true);
  box->audio.removeDevice(headset);
  settle();
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
}

TEST_F(DeviceLoss, APausedTrackIsLeftAloneAndTheReturnDoesNothing) {
  setPlaying(false);
  box->advanceSeconds(1);
  unplug();
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(DeviceLoss, WithoutATrackSomethingThatSoundsIsPaused) {
  box->setSounding(editor, true);
  box->detect();
  unplug();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(DeviceLoss, WithoutATrackAndWithOnlyACallNothingIsPaused) {
  box->setSounding(zoom, true);
  microphone(zoom, true);
  unplug();
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(DeviceLoss, WithoutATrackInSilenceNothingIsPaused) {
  unplug();
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(DeviceLoss, ALossWithoutADeviceNamePausesAndIsNeverResumed) {
  // The old default could not tell its name.
  box->audio.setDefaultOutput(speakers);
  box->audio.updateDevice(headset, {std::nullopt, "Headset", 1, audio::transportUSB});
  box->audio.setDefaultOutput(headset);
  settle();
  play();
  box->audio.setDefaultOutput(speakers);
  settle();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  box->advanceSeconds(1);
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(DeviceLoss, ARemovedDeviceCountsOnlyWhereAnApplicationWasRoutedToIt) {
  box->audio.setDefaultOutput(speakers);
  settle();
  play();
  const auto dac = box->audio.addDevice({"dac", "DAC"});
  settle();
  box->audio.removeDevice(dac);
  settle();
  EXPECT_THAT(keys(), IsEmpty());
  const auto again = box->audio.addDevice({"dac", "DAC"});
  settle();
  state().setRouting("dac", spotify);
  box->audio.removeDevice(again);
  settle();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(DeviceLoss, WhileOneDeviceIsWaitedForTheRemovalOfAnotherIsIgnored) {
  box->audio.setDefaultOutput(speakers);
  settle();
  const auto first = box->audio.addDevice({"A", "A"});
  const auto second = box->audio.addDevice({"B", "B"});
  settle();
  state().setRouting("A", spotify);
  state().setRouting("B", editor);
  play();
  box->keys.clear();
  box->audio.removeDevice(first);
  settle();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  // Before the poll that sees the pause: only what is waited for keeps the key from being pressed again.
  box->audio.removeDevice(second);
  settle();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  box->advanceSeconds(1);
  box->audio.addDevice({"B", "B"});
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play)) << "the return of B does nothing";
  box->audio.addDevice({"A", "A"});
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
}

TEST_F(DeviceLoss, ASecondLossOfTheDefaultOverwritesTheFirst) {
  play();
  unplug();
  // A second headset takes over, and goes too, with something playing again that the poll has not seen.
  playerObeys = false;
  const auto other = box->audio.addDevice({"other", "Other", 1, audio::transportBluetooth});
  box->audio.setDefaultOutput(other);
  settle();
  box->audio.removeDevice(other);
  settle();
  EXPECT_EQ(keys().size(), 2U) << "the state still believes that the track plays";
  setPlaying(false);
  box->advanceSeconds(2);
  plug();
  box->advanceSeconds(2);
  EXPECT_EQ(keys().size(), 2U) << "the first device is no longer waited for";
  box->audio.addDevice({"other", "Other", 1, audio::transportBluetooth});
  box->advanceSeconds(2);
  EXPECT_EQ(keys().size(), 3U);
}

TEST_F(DeviceLoss, APlayerThatPlaysAgainByItselfClearsTheWaiting) {
  play();
  unplug();
  box->advanceSeconds(2);
  play();
  setPlaying(false);
  box->advanceSeconds(1);
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(DeviceLoss, APollThatStillSeesTheOldPlayingStateClearsTheWaitingToo) {
  playerObeys = false;
  play();
  unplug();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  box->advanceSeconds(1);
  setPlaying(false);
  box->advanceSeconds(1);
  plug();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play)) << "the accepted race: nothing is resumed";
}

TEST_F(DeviceLoss, AReturnWhileThePlayerAlreadyPlaysPressesNothing) {
  play();
  unplug();
  box->advanceSeconds(2.5);
  plug();
  // The poll half a second later sees it, before the delay is over.
  setPlaying(true);
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play)) << "the key would have stopped it";
}

TEST_F(DeviceLoss, ASecondLossWithinTheDelayDoesNotStopTheResumesTest) {
  play();
  unplug();
  box->advanceSeconds(2);
  plug();
  box->audio.setDefaultOutput(headset);
  box->time.advance(std::chrono::milliseconds(400));
  unplug();
  ASSERT_EQ(box->audio.defaultOutput(), speakers) << "the default output left the headset once more";
  EXPECT_THAT(keys(), ElementsAre(mediakey::play)) << "what is paused needs no key";
  box->time.advance(std::chrono::milliseconds(400));
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
}

TEST_F(DeviceLoss, ADefaultThatIsAlsoRoutedToIsPausedOnceWhereItsMoveIsToldBeforeItsRemoval) {
  state().setRouting("headset", spotify);
  play();
  box->audio.setDefaultOutput(speakers);
  box->audio.removeDevice(headset);
  settle();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(DeviceLoss, ADefaultThatIsAlsoRoutedToPressesTwiceWhereItsRemovalIsToldFirst) {
  // A move of the default asks nobody whether a pause is already waited for.
  state().setRouting("headset", spotify);
  play();
  unplug();
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
}

TEST_F(DeviceLoss, TheProgramsOwnChangeOfTheDefaultPausesNothing) {
  play();
  state().setOutputDeviceUID("speakers");
  settle();
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(DeviceLoss, WhatIsWaitedForIsForgottenWithTheProgram) {
  play();
  unplug();
  restart({{spotify, "Spotify"}});
  box->addHeadset();
  box->advanceSeconds(2);
  EXPECT_THAT(keys(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
