// What the page of the mixer shows, without a window.
#include "views/mixercanvas/MixerCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class MixerPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<MixerCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  [[nodiscard]] AppRowPresenter& row(const char* bundleID) const {
    for (int at = 0; at < page->rows()->count(); ++at) {
      if (page->rows()->row(at)->identifier() == bundleID) return *page->rows()->row(at);
    }
    throw std::out_of_range(bundleID);
  }

  std::unique_ptr<MixerCanvasPresenter> page;
};

TEST_F(MixerPage, EmptyMachineIsGreetedQuietly) {
  startViews();
  make();
  EXPECT_EQ(page->greeting(), "Quiet right now.");
  EXPECT_EQ(page->subtitle(), "Open Spotify, Slack, a YouTube tab — apps appear here.");
  EXPECT_FALSE(page->anyApps());
  EXPECT_EQ(page->averageGain(), 0.0);
  EXPECT_EQ(page->liveTag(), "Idle");
  EXPECT_EQ(page->sourcesText(), "0 sources");
  EXPECT_EQ(page->finderState(), "Listening");
  EXPECT_EQ(page->duckState(), "Standing by");
}

TEST_F(MixerPage, OneSourceIsSingular) {
  box->launch(spotify, "Spotify");
  box->setSounding(spotify, true);
  startViews();
  make();
  EXPECT_EQ(page->greeting(), "Mixing 1 source.");
  EXPECT_EQ(page->subtitle(), "1 app connected.");
  EXPECT_EQ(page->sourcesText(), "1 source");
  EXPECT_EQ(page->liveTag(), "Live");
  EXPECT_EQ(page->finderState(), "1 live");
  EXPECT_EQ(page->liveCountText(), "1 live");
}

TEST_F(MixerPage, SeveralSourcesArePlural) {
  startWithSounding({spotify, editor});
  make();
  EXPECT_EQ(page->greeting(), "Mixing 2 sources.");
  EXPECT_EQ(page->sourcesText(), "2 sources");
  EXPECT_EQ(page->finderState(), "2 live");
}

TEST_F(MixerPage, KnownButSilentApplicationsAreCountedAndListed) {
  startWithSounding({});
  make();
  EXPECT_EQ(page->greeting(), "Quiet right now.");
  EXPECT_EQ(page->subtitle(), "3 apps connected.");
  EXPECT_EQ(page->rows()->count(), 3);
  EXPECT_FALSE(row(spotify).live());
  EXPECT_EQ(page->averageGain(), 0.0);
}

TEST_F(MixerPage, CallTakesTheSubtitleWhateverTheNumberOfApplications) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  EXPECT_EQ(page->subtitle(), "Music ducked — a call is active.");
  EXPECT_EQ(page->duckState(), "Ducking now");
  EXPECT_TRUE(page->ducking());
}

TEST_F(MixerPage, AverageGainIsThatOfWhatSounds) {
  startWithSounding({spotify, editor});
  make();
  state().setGain(0.5F, spotify);
  state().setGain(0.0F, zoom);
  EXPECT_DOUBLE_EQ(page->averageGain(), 0.75);
}

TEST_F(MixerPage, WhisperButtonSaysWhatItDoes) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(page->whisperText(), "Engage Whisper Mode");
  page->toggleWhisper();
  EXPECT_EQ(page->whisperText(), "Whisper Mode on — tap to restore");
  EXPECT_TRUE(page->whisperOn());
}

TEST_F(MixerPage, ProfilesAreCountedUntilOneIsActive) {
  startWithSounding({});
  make();
  EXPECT_EQ(page->profilesState(), "1 saved");
  state().addProfile("Evening");
  EXPECT_EQ(page->profilesState(), "2 saved");
  EXPECT_FALSE(page->profileActive());
  state().applyProfile(state().profiles()->back().id);
  EXPECT_EQ(page->profilesState(), "Profile active");
  EXPECT_TRUE(page->profileActive());
}

TEST_F(MixerPage, CardTellsItsIdentifierUntilThereIsMoreToTell) {
  box->addHeadset();
  startWithSounding({spotify});
  make();
  EXPECT_EQ(row(spotify).cardSubtitle(), spotify);
  state().setRouting("headset", spotify);
  EXPECT_EQ(row(spotify).cardSubtitle(), "→ Headset");
  microphone(zoom, true);
  EXPECT_EQ(row(spotify).cardSubtitle(), "Ducked");
}

TEST_F(MixerPage, CardOfAVanishedDeviceFallsBackToItsIdentifier) {
  const auto headset = box->addHeadset();
  startWithSounding({spotify});
  make();
  state().setRouting("headset", spotify);
  box->audio.removeDevice(headset);
  box->advanceSeconds(4);
  EXPECT_EQ(row(spotify).cardSubtitle(), spotify);
}

TEST_F(MixerPage, CardsPercentageIsBrightUnlessMuted) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(row(spotify).cardPercentColor(), "textPrimary");
  state().toggleMute(spotify);
  EXPECT_EQ(row(spotify).cardPercentColor(), "textTertiary");
}

TEST_F(MixerPage, OutputHasTheLargeSymbols) {
  startWithSounding({});
  make();
  EXPECT_EQ(page->output()->deviceIcon(), "hifispeaker.2.fill");
}

TEST_F(MixerPage, DetectionThatFindsNothingNewTellsNothing) {
  startWithSounding({spotify});
  make();
  int told = 0;
  for (const auto signal : {&MixerCanvasPresenter::liveChanged, &MixerCanvasPresenter::subtitleChanged,
                            &MixerCanvasPresenter::averageGainChanged, &MixerCanvasPresenter::duckingChanged}) {
    QObject::connect(page.get(), signal, page.get(), [&told] { ++told; });
  }
  for (int i = 0; i < 20; ++i) box->detect();
  EXPECT_EQ(told, 0);
  state().setGain(0.5F, spotify);
  EXPECT_EQ(told, 1);
}

TEST_F(MixerPage, OneOfThousandApplicationsIsToldByItself) {
  for (int i = 0; i < 1000; ++i) box->launch("org.example.app" + std::to_string(i), "App " + std::to_string(i));
  startViews();
  make();
  ASSERT_EQ(page->rows()->count(), 1000);
  std::map<std::string, int> told;
  for (int at = 0; at < 1000; ++at) {
    auto* each = page->rows()->row(at);
    const auto count = [&told, each] { ++told[each->identifier()]; };
    QObject::connect(each, &AppRowPresenter::gainChanged, each, count);
    QObject::connect(each, &AppRowPresenter::lookChanged, each, count);
  }
  QSignalSpy rows(page->rows(), &AppRowModel::dataChanged);
  state().setGain(0.5F, "org.example.app17");
  EXPECT_EQ(told, (std::map<std::string, int>{{"org.example.app17", 1}}));
  told.clear();
  state().toggleMute("org.example.app900");
  EXPECT_EQ(told, (std::map<std::string, int>{{"org.example.app900", 1}}));
  EXPECT_EQ(rows.count(), 0);
}

}  // namespace
}  // namespace quillmere
