// The default output on a machine that is no better than daemons are: it has moments without one, and it answers a
// choice late, or takes it back.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UntidyDefault : public StateFixture {
 protected:
  void SetUp() override {
    headset = box->addHeadset();
    box->audio.setDefaultOutput(headset);
    startWithThree();
    box->keys.setOnPress([this](std::int32_t) { setPlaying(!playing); });
    setPlaying(true);
    box->advanceSeconds(1);
    forget();
  }
  void setPlaying(bool plays) {
    playing = plays;
    box->player.setTrack("Song", plays, box->pidOf(spotify));
  }
  void loseHeadset() {
    box->audio.setLeavesGaps(true);
    box->audio.removeDevice(headset);
    settle();
  }
  void takeOver(AudioObjectID device) {
    box->audio.setDefaultOutput(device);
    settle();
  }
  /// Music plays on the speakers, the headset is at hand.
  void playOnSpeakers() {
    takeOver(speakers);
    setPlaying(true);
    box->advanceSeconds(3);
    box->keys.clear();
    forget();
  }
  void choose(const std::string& uid) {
    box->audio.setDefaultWrites(DefaultWrites::awaited);
    state().setOutputDeviceUID(uid);
    settle();
  }
  void answer(bool takes) {
    box->audio.answerDefaultWrite(takes);
    settle();
  }
  [[nodiscard]] const std::vector<std::int32_t>& keys() const { return box->keys.pressed(); }
  [[nodiscard]] std::string shownDefault() const {
    for (const auto& device : *state().outputDevices()) {
      if (device.isDefault) return device.uid;
    }
    return "none";
  }

  AudioObjectID headset = 0;
  bool playing = false;
};

// Moments without a default.

TEST_F(UntidyDefault, AnotherHeadsetThatTakesOverAfterAMomentPausesNothing) {
  const auto other = box->audio.addDevice({"other", "Other", 1, audio::transportBluetooth, true, {{0, {0.2F}}}});
  loseHeadset();
  box->advanceSeconds(1);
  takeOver(other);
  EXPECT_THAT(keys(), IsEmpty());
  box->advanceSeconds(3);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.2F);
}

TEST_F(UntidyDefault, SpeakersThatTakeOverAfterAMomentPauseAndTheReturnResumes) {
  loseHeadset();
  EXPECT_THAT(keys(), IsEmpty());
  takeOver(speakers);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
  box->advanceSeconds(2);
  headset = box->addHeadset();
  box->advanceSeconds(1);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play, mediakey::play));
}

TEST_F(UntidyDefault, InTheMomentItselfNothingHappens) {
  loseHeadset();
  box->advanceSeconds(7);
  EXPECT_THAT(keys(), IsEmpty());
  EXPECT_EQ(shownDefault(), "none");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(UntidyDefault, TheMasterCanBeMovedInTheMomentAndMovesNoDevice) {
  loseHeadset();
  state().setMasterGain(0.9F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.9F);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.6F);
  takeOver(speakers);
  box->advanceSeconds(3);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
}

TEST_F(UntidyDefault, NoDefaultForGoodIsALoss) {
  loseHeadset();
  takeOver(0);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

// Choices that are answered late.

TEST_F(UntidyDefault, AChoiceThatIsTakenLateDoesNothingElse) {
  choose("speakers");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall()));
  box->advanceSeconds(10);
  EXPECT_EQ(shownDefault(), "speakers");
  answer(true);
  box->advanceSeconds(10);
  EXPECT_EQ(shownDefault(), "speakers");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall()));
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(UntidyDefault, AfterALateAnswerARealLossCounts) {
  playOnSpeakers();
  choose("headset");
  box->advanceSeconds(10);
  answer(true);
  EXPECT_THAT(keys(), IsEmpty());
  loseHeadset();
  takeOver(speakers);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(UntidyDefault, ALaterChoiceIsTheOneThatIsAnswered) {
  box->audio.addDevice({"screen", "Screen", 1, audio::transportHDMI, true, {{0, {0.8F}}}});
  choose("speakers");
  choose("screen");
  answer(true);
  box->advanceSeconds(3);
  EXPECT_EQ(shownDefault(), "screen");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.8F);
  EXPECT_THAT(keys(), IsEmpty());
}

// Choices that are taken back.

TEST_F(UntidyDefault, ARefusalFallsBackToTheRealDevice) {
  choose("speakers");
  box->advanceSeconds(4);
  answer(false);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F) << "at once, not with the next look at the devices";
  EXPECT_THAT(keys(), IsEmpty());
  box->advanceSeconds(3);
  EXPECT_EQ(shownDefault(), "headset");
  EXPECT_EQ(*state().outputDeviceUID(), "speakers") << "the field shows the choice, not the fact";
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall(), refreshCall()));
}

TEST_F(UntidyDefault, ARefusalThatNoLookAtTheDevicesHasSeenFallsBackToo) {
  choose("speakers");
  answer(false);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(UntidyDefault, AHeadsetThatIsRefusedWasNeverLost) {
  playOnSpeakers();
  choose("headset");
  box->advanceSeconds(4);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  answer(false);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  box->advanceSeconds(4);
  EXPECT_THAT(keys(), IsEmpty());
}

TEST_F(UntidyDefault, AfterARefusalTheRealDevicesVolumeIsHeardAndMoved) {
  choose("speakers");
  answer(false);
  box->audio.setVolume(headset, 0, 0.7F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.7F);
  state().setMasterGain(0.3F);
  EXPECT_EQ(box->audio.volume(headset, 0), 0.3F);
}

TEST_F(UntidyDefault, AfterARefusalARealLossCounts) {
  choose("speakers");
  answer(false);
  loseHeadset();
  takeOver(speakers);
  EXPECT_THAT(keys(), ElementsAre(mediakey::play));
}

TEST_F(UntidyDefault, AChosenDeviceThatGoesBeforeTheAnswerIsRefused) {
  const auto other = box->audio.addDevice({"other", "Other", 1, audio::transportBluetooth, true, {{0, {0.2F}}}});
  settle();
  choose("other");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.2F);
  box->audio.removeDevice(other);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  EXPECT_THAT(keys(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
