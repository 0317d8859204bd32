// The state over the real driver client and engine: what a gesture does to taps and aggregates.
#include <cstddef>

#include "StateFixture.h"
#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class WithTheRealEngine : public StateFixture {
 protected:
  WithTheRealEngine()
      : engine(std::make_unique<ProcessTapEngine>(box->audio, box->runtime)),
        driver(std::make_unique<DriverClient>(*engine, box->runtime.background)) {}
  ~WithTheRealEngine() override {
    box->state.reset();
    box->time.shutDown();
  }
  void startAll() {
    box->launch(spotify, "Spotify");
    box->launch(zoom, "Zoom");
    box->state = AppState::create(box->machine, box->runtime, *driver);
    settle();
  }
  [[nodiscard]] std::string deviceOf(AudioObjectID aggregate) const {
    return box->audio.aggregateDescription(aggregate).value().mainDeviceUID;
  }

  std::unique_ptr<ProcessTapEngine> engine;
  std::unique_ptr<DriverClient> driver;
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

}  // namespace
}  // namespace quillmere
