// Whisper Mode: one step down, one step back, blind to everything else.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class Whisper : public StateFixture {
 protected:
  void SetUp() override { startWithThree(); }
};

TEST_F(Whisper, TheFirstTapTakesEverythingToTheLevelInOneStep) {
  state().setGain(0.5F, spotify);
  settle();
  forget();
  state().toggleWhisperMode();
  settle();
  EXPECT_TRUE(*state().isWhisperMode());
  for (const auto& app : *state().apps()) EXPECT_FLOAT_EQ(app.gain, 0.1F) << app.bundleID;
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.1F);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(editor, 0.1F), gainCall(spotify, 0.1F), gainCall(zoom, 0.1F)));
}

TEST_F(Whisper, ItWritesTheMasterAndNotTheListAndLeavesTheHardwareWhereItIs) {
  state().toggleWhisperMode();
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.masterGain"));
  EXPECT_EQ(disk.real("quillmere.masterGain"), static_cast<double>(0.1F));
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.6F);
}

TEST_F(Whisper, TwoTapsLeaveGainsAndMasterAsBefore) {
  state().setGain(0.5F, spotify);
  const auto before = *state().apps();
  state().toggleWhisperMode();
  state().toggleWhisperMode();
  settle();
  EXPECT_FALSE(*state().isWhisperMode());
  EXPECT_EQ(*state().apps(), before);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  EXPECT_EQ(disk.real("quillmere.masterGain"), static_cast<double>(0.6F));
  EXPECT_EQ(box->engine->lastGain(spotify), 0.5F);
  EXPECT_EQ(box->engine->lastGain(zoom), 1.0F);
}

TEST_F(Whisper, AnApplicationAtZeroGoesUpToTheLevelAndBack) {
  state().setGain(0.0F, spotify);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.1F);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
}

TEST_F(Whisper, AMutedApplicationIsSentTheLevelAndItsSavedGainLikeAnyOther) {
  state().toggleMute(spotify);
  state().toggleWhisperMode();
  settle();
  EXPECT_TRUE(box->app(spotify)->muted);
  EXPECT_EQ(box->engine->lastGain(spotify), 0.1F);
  state().toggleWhisperMode();
  settle();
  EXPECT_TRUE(box->app(spotify)->muted);
  EXPECT_EQ(box->engine->lastGain(spotify), 1.0F);
}

TEST_F(Whisper, WithoutApplicationsOnlyTheMasterChanges) {
  for (const auto* each : {spotify, zoom, editor}) box->quit(each);
  box->detect();
  state().toggleWhisperMode();
  EXPECT_TRUE(*state().isWhisperMode());
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.1F);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  settle();
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(Whisper, ApplicationsThatCameOrWentBetweenTheTapsAreLeftAlone) {
  state().setGain(0.5F, spotify);
  settle();
  state().toggleWhisperMode();
  box->quit(spotify);
  box->launch(chrome, "Chrome");
  box->detect();
  forget();
  state().toggleWhisperMode();
  settle();
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 1.0F);
  EXPECT_THAT(engineCalls(), UnorderedElementsAre(gainCall(editor, 1.0F), gainCall(zoom, 1.0F)));
  box->launch(spotify, "Spotify");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F) << "the saved gain went with the second tap";
}

TEST_F(Whisper, ALaterWhisperKnowsNothingOfTheSnapshotOfAnEarlierOne) {
  state().toggleWhisperMode();
  state().toggleWhisperMode();
  box->quit(spotify);
  box->detect();
  state().toggleWhisperMode();
  box->launch(spotify, "Spotify");
  box->detect();
  state().setGain(0.4F, spotify);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.4F);
}

TEST_F(Whisper, ASliderMovedDuringWhisperIsOverwrittenByTheSecondTap) {
  state().toggleWhisperMode();
  state().setGain(0.7F, spotify);
  EXPECT_FLOAT_EQ(storedApps().at(0).gain, 0.1F) << "the whisper gains of all others are stored with it";
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Whisper, QuittingDuringWhisperLosesTheSnapshotAndKeepsTheStoredGains) {
  state().setGain(0.5F, spotify);
  state().toggleWhisperMode();
  restart({{spotify, "Spotify"}});
  EXPECT_FALSE(*state().isWhisperMode());
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F) << "from the hardware";
  EXPECT_EQ(disk.real("quillmere.masterGain"), static_cast<double>(0.1F));
}

TEST_F(Whisper, AProfileAppliedDuringWhisperIsOverwrittenByTheSecondTap) {
  state().setGain(0.9F, spotify);
  state().addProfile("Loud");
  state().setGain(0.8F, spotify);
  state().toggleWhisperMode();
  state().applyProfile(state().profiles()->back().id);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.9F);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
}

TEST_F(Whisper, ADuckThatBeginsDuringWhisperSavesTheWhisperLevel) {
  state().toggleWhisperMode();
  microphone(zoom, true);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F) << "raised to the target";
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.1F);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Whisper, AWhisperBegunDuringADuckWritesTheLoweredGainBackWithNoDuckLeftToUndoIt) {
  microphone(zoom, true);
  state().toggleWhisperMode();
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F) << "the duck's end raises it while whisper is on";
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
}

}  // namespace
}  // namespace quillmere
