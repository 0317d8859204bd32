// The output section: names, symbols, the picker, the percentage that flashes.
#include "views/mixer/OutputPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

using Devices = std::vector<AudioOutputDevice>;

TEST(CurrentDeviceName, ChosenDeviceComesFirst) {
  const Devices devices{{"a", "Default One", 1, true}, {"b", "Chosen One", 2, false}};
  EXPECT_EQ(currentDeviceName("b", devices), "Chosen One");
}

TEST(CurrentDeviceName, WithoutAChoiceTheDefaultDeviceIsNamed) {
  const Devices devices{{"a", "Other", 1, false}, {"b", "Default One", 2, true}};
  EXPECT_EQ(currentDeviceName(std::nullopt, devices), "Default One");
}

TEST(CurrentDeviceName, ChoiceThatIsGoneFallsThroughToTheDefault) {
  const Devices devices{{"a", "Default One", 1, true}};
  EXPECT_EQ(currentDeviceName("gone", devices), "Default One");
}

TEST(CurrentDeviceName, WithoutDevicesItIsTheSystemOutput) {
  EXPECT_EQ(currentDeviceName(std::nullopt, {}), "System Output");
  EXPECT_EQ(deviceSymbol(currentDeviceName(std::nullopt, {}), DeviceSymbolStyle::small), "speaker.wave.2");
}

TEST(DeviceSymbol, FollowsTheWordsInTheName) {
  const auto symbol = [](const char* name) { return deviceSymbol(name, DeviceSymbolStyle::small); };
  EXPECT_EQ(symbol("Ann's AirPods Pro"), "airpods");
  EXPECT_EQ(symbol("BEATS Studio"), "airpods");
  EXPECT_EQ(symbol("Travel Headphones"), "headphones");
  EXPECT_EQ(symbol("USB Headset"), "headphones");
  EXPECT_EQ(symbol("Studio Display"), "display");
  EXPECT_EQ(symbol("HDMI 2"), "tv");
  EXPECT_EQ(symbol("Living Room TV"), "tv");
  EXPECT_EQ(symbol("Built-in Audio"), "speaker.wave.2");
}

TEST(DeviceSymbol, FirstRuleThatHoldsCounts) {
  EXPECT_EQ(deviceSymbol("AirPods headphones on a display", DeviceSymbolStyle::small), "airpods");
  EXPECT_EQ(deviceSymbol("HDMI Display", DeviceSymbolStyle::small), "display");
}

TEST(DeviceSymbol, AnyWordWithTheLettersOfTvCounts) {
  EXPECT_EQ(deviceSymbol("Outvolume", DeviceSymbolStyle::small), "tv");
}

TEST(DeviceSymbol, MainWindowHasLargerSymbolsForTwoOfThem) {
  const auto symbol = [](const char* name) { return deviceSymbol(name, DeviceSymbolStyle::large); };
  EXPECT_EQ(symbol("AirPods"), "airpods.max");
  EXPECT_EQ(symbol("Headphones"), "headphones");
  EXPECT_EQ(symbol("Speakers"), "hifispeaker.2.fill");
}

class Output : public ViewsFixture {
 protected:
  void make() { output = std::make_unique<OutputPresenter>(sharedState(), box->runtime, DeviceSymbolStyle::small); }
  void TearDown() override { output.reset(); }
  std::unique_ptr<OutputPresenter> output;
};

TEST_F(Output, PercentageIsHiddenAtFirst) {
  startViews();
  make();
  EXPECT_FALSE(output->percentVisible());
  EXPECT_EQ(output->percentText(), "60%");
}

TEST_F(Output, PercentageComesUpOnAChangeAndGoesAfterNineTenthsOfASecond) {
  startViews();
  make();
  output->setMasterGain(0.5);
  EXPECT_TRUE(output->percentVisible());
  box->advanceSeconds(0.89);
  EXPECT_TRUE(output->percentVisible());
  box->advanceSeconds(0.02);
  EXPECT_FALSE(output->percentVisible());
}

TEST_F(Output, SteadyDragKeepsThePercentageUpUntilNineTenthsAfterItsLastStep) {
  startViews();
  make();
  for (int step = 1; step <= 20; ++step) {
    output->setMasterGain(0.5 + step * 0.01);
    box->advanceSeconds(0.5);
    ASSERT_TRUE(output->percentVisible());
  }
  box->advanceSeconds(0.41);
  EXPECT_FALSE(output->percentVisible());
}

TEST_F(Output, ChangeFromElsewhereFlashesThePercentageToo) {
  startViews();
  make();
  box->audio.setVolume(speakers, 0, 0.2F);
  settle();
  EXPECT_TRUE(output->percentVisible());
  EXPECT_EQ(output->percentText(), "20%");
}

TEST_F(Output, MasterSetToWhatItIsFlashesNothing) {
  startViews();
  make();
  output->setMasterGain(output->masterGain());
  EXPECT_FALSE(output->percentVisible());
}

TEST_F(Output, PercentageStaysWhileThePointerIsOverTheSection) {
  startViews();
  make();
  output->setHovering(true);
  EXPECT_TRUE(output->percentVisible());
  box->advanceSeconds(5);
  EXPECT_TRUE(output->percentVisible());
  output->setHovering(false);
  EXPECT_FALSE(output->percentVisible());
}

TEST_F(Output, MasterJustBelowOneReadsNinetyNine) {
  startViews();
  make();
  output->setMasterGain(0.999);
  EXPECT_EQ(output->percentText(), "99%");
}

TEST_F(Output, LiveFollowsWhetherAnythingSounds) {
  startWithSounding({});
  make();
  EXPECT_FALSE(output->live());
  QSignalSpy spy(output.get(), &OutputPresenter::liveChanged);
  sound(spotify, true);
  EXPECT_TRUE(output->live());
  EXPECT_EQ(spy.count(), 1);
}

TEST_F(Output, PickingADeviceMarksItAndMakesItTheSystemDefault) {
  const auto headset = box->addHeadset();
  startViews();
  make();
  EXPECT_EQ(titles(*output->deviceMenu()), QStringList({"Speakers", "Headset"}));
  choose(*output->deviceMenu(), "Headset");
  EXPECT_EQ(output->deviceName(), "Headset");
  EXPECT_EQ(output->deviceIcon(), "headphones");
  EXPECT_EQ(box->audio.defaultOutput(), headset);
  box->advanceSeconds(4);
  EXPECT_TRUE(titles(*output->deviceMenu()).contains("* Headset"));
}

TEST_F(Output, PendingFlashDoesNotOutliveTheSection) {
  startViews();
  make();
  output->setMasterGain(0.5);
  output.reset();
  box->advanceSeconds(2);
}

}  // namespace
}  // namespace quillmere
