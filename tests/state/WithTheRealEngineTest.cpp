// The state over the real driver client and engine: what a gesture does to taps and aggregates.
#include <cstddef>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class WithTheRealEngine : public StateFixture {
 protected:
  WithTheRealEngine() { box->tapForReal(); }
  void startAll() {
    box->launch(spotify, "Spotify");
    box->launch(zoom, "Zoom");
    box->start();
  }
  [[nodiscard]] std::string deviceOf(AudioObjectID aggregate) const {
    return box->audio.aggregateDescription(aggregate).value().mainDeviceUID;
  }
};

TEST_F(WithTheRealEngine, NobodyAtUnityIsTapped) {
  startAll();
  box->advanceSeconds(5);
  EXPECT_THAT(box->audio.taps(), IsEmpty());
}

TEST_F(WithTheRealEngine, AGainTapsItsApplicationAloneAndUnityReleasesIt) {
  startAll();
  state().setGain(0.5F, spotify);
  settle();
  ASSERT_THAT(box->audio.aggregates(), SizeIs(1));
  EXPECT_EQ(deviceOf(box->audio.aggregates().front()), "speakers");
  state().setGain(1.0F, spotify);
  settle();
  EXPECT_THAT(box->audio.taps(), IsEmpty());
  EXPECT_THAT(box->audio.aggregates(), IsEmpty());
}

TEST_F(WithTheRealEngine, AStoredGainIsHeardAtTheFirstDetection) {
  storeApps({{spotify, "Spotify", 0.5F, false, std::nullopt}});
  startAll();
  EXPECT_THAT(box->audio.taps(), SizeIs(1));
}

TEST_F(WithTheRealEngine, ADuckTapsTheMusicAndItsEndReleasesIt) {
  startAll();
  microphone(zoom, true);
  EXPECT_THAT(box->audio.taps(), SizeIs(1));
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_THAT(box->audio.taps(), IsEmpty());
}

TEST_F(WithTheRealEngine, ChoosingAnotherDeviceRebuildsWhatFollowsTheDefault) {
  box->addHeadset();
  startAll();
  state().setGain(0.5F, spotify);
  settle();
  state().setOutputDeviceUID("headset");
  settle();
  ASSERT_THAT(box->audio.aggregates(), SizeIs(1));
  EXPECT_EQ(deviceOf(box->audio.aggregates().front()), "headset");
}

TEST_F(WithTheRealEngine, ARouteMovesItsApplicationToTheDevice) {
  box->addHeadset();
  startAll();
  state().setRouting("headset", spotify);
  settle();
  ASSERT_THAT(box->audio.aggregates(), SizeIs(1));
  EXPECT_EQ(deviceOf(box->audio.aggregates().front()), "headset");
  state().setRouting(std::nullopt, spotify);
  settle();
  EXPECT_THAT(box->audio.aggregates(), IsEmpty());
}

TEST_F(WithTheRealEngine, AGainThatIsNotANumberCountsAsFullAndTapsNobody) {
  startAll();
  state().setGain(std::numeric_limits<float>::quiet_NaN(), spotify);
  settle();
  EXPECT_THAT(box->audio.taps(), IsEmpty());
}

TEST_F(WithTheRealEngine, ASoundingTapMakesItsApplicationLive) {
  startAll();
  state().setGain(0.5F, spotify);
  settle();
  ASSERT_THAT(box->audio.aggregates(), SizeIs(1));
  std::vector<float> in(512, 0.25F);
  std::vector<float> out(512, 0.0F);
  const auto bytes = static_cast<std::uint32_t>(in.size() * sizeof(float));
  AudioBuffer input{2, bytes, in.data()};
  AudioBuffer output{2, bytes, out.data()};
  ASSERT_TRUE(box->audio.runIOCycle(box->audio.aggregates().front(), {{&input, 1}}, {{&output, 1}}));
  box->detect();
  EXPECT_TRUE(state().liveBundleIDs()->contains(spotify));
}

// On a machine whose cycles stop with the application.

class WhereCyclesStop : public WithTheRealEngine {
 protected:
  WhereCyclesStop() { box->audio.setCycles(std::chrono::milliseconds(21), 0.25F); }
  void playTapped() {
    startAll();
    box->setSounding(spotify, true);
    state().setGain(0.5F, spotify);
    box->advanceSeconds(3);
    ASSERT_TRUE(isLive());
  }
  [[nodiscard]] bool isLive() const { return state().liveBundleIDs()->contains(spotify); }
};

TEST_F(WhereCyclesStop, ATappedApplicationThatPausesIsLiveForOneAndAHalfSeconds) {
  playTapped();
  box->setSounding(spotify, false);
  box->advanceSeconds(1.5);
  EXPECT_TRUE(isLive());
  // A look may come late by one poll, and so may the look that finds the time over.
  box->advanceSeconds(0.3);
  EXPECT_FALSE(isLive());
  EXPECT_THAT(box->audio.taps(), SizeIs(1)) << "its tap stands";
}

TEST_F(WhereCyclesStop, ATappedApplicationThatPlaysOnIsLiveAtOnce) {
  playTapped();
  box->setSounding(spotify, false);
  box->advanceSeconds(60);
  EXPECT_FALSE(isLive());
  box->setSounding(spotify, true);
  box->detect();
  EXPECT_TRUE(isLive());
}

TEST_F(WhereCyclesStop, ATappedApplicationThatQuitsIsLiveForOneAndAHalfSeconds) {
  playTapped();
  box->quit(spotify);
  box->advanceSeconds(1.8);
  EXPECT_FALSE(isLive());
}

TEST_F(WhereCyclesStop, OneThatPausesIsSilentWhileAnotherPlaysOn) {
  playTapped();
  box->setSounding(zoom, true);
  state().setGain(0.25F, zoom);
  box->advanceSeconds(1);
  box->setSounding(spotify, false);
  box->advanceSeconds(1.8);
  EXPECT_FALSE(isLive());
  EXPECT_TRUE(state().liveBundleIDs()->contains(zoom));
}

// Many at once.

class ManyApplications : public WithTheRealEngine, public ::testing::WithParamInterface<int> {
 protected:
  void startMany() {
    for (int index = 0; index < GetParam(); ++index) {
      box->launch(nameOf(index), nameOf(index));
      box->setSounding(nameOf(index), true);
    }
    box->start();
  }
  static std::string nameOf(int index) { return "org.example.app" + std::to_string(100 + index); }
  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(GetParam()); }
  void expectList(float gain) const {
    ASSERT_THAT(*state().apps(), SizeIs(count()));
    for (const auto& app : *state().apps()) ASSERT_EQ(app.gain, gain) << app.bundleID;
    ASSERT_THAT(*state().liveBundleIDs(), SizeIs(count()));
  }
};

TEST_P(ManyApplications, AreAllTappedInTheTimeOfOneWhileTheListStaysRight) {
  startMany();
  box->audio.setAggregateAliveDelay(std::chrono::seconds(1));
  state().toggleWhisperMode();
  for (int poll = 0; poll < 7; ++poll) {
    expectList(0.1F);
    box->detect();
  }
  EXPECT_THAT(box->audio.aggregates(), SizeIs(count()));
  for (const auto aggregate : box->audio.aggregates()) EXPECT_TRUE(box->audio.isRunning(aggregate));
  EXPECT_EQ(box->time.threadSleepCount(), 0) << "nobody was kept waiting";
  state().toggleWhisperMode();
  settle();
  EXPECT_THAT(box->audio.taps(), IsEmpty());
  expectList(1.0F);
}

INSTANTIATE_TEST_SUITE_P(, ManyApplications, ::testing::Values(16, 32, 64));

}  // namespace
}  // namespace quillmere
