// What the page of the mixer shows.
#include "views/mixercanvas/MixerCanvasPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class MixerPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<MixerCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }

  std::unique_ptr<MixerCanvasPresenter> page;
};

TEST_F(MixerPage, EmptyMachineIsGreetedQuietly) {
  startViews();
  make();
  EXPECT_EQ(page->greeting(), "Quiet right now.");
  EXPECT_EQ(page->subtitle(), "Open Spotify, Slack, a YouTube tab — apps appear here.");
  EXPECT_FALSE(page->anyApps());
  EXPECT_EQ(page->averageGain(), 0.0);
}

TEST_F(MixerPage, OneSourceIsSingular) {
  box->launch(spotify, "Spotify");
  box->setSounding(spotify, true);
  startViews();
  make();
  EXPECT_EQ(page->greeting(), "Mixing 1 source.");
  EXPECT_EQ(page->subtitle(), "1 app connected.");
}

TEST_F(MixerPage, KnownButSilentApplicationsAreCounted) {
  startWithSounding({});
  make();
  EXPECT_EQ(page->greeting(), "Quiet right now.");
  EXPECT_EQ(page->subtitle(), "3 apps connected.");
  EXPECT_EQ(page->rows()->count(), 3);
  EXPECT_EQ(page->averageGain(), 0.0);
}

TEST_F(MixerPage, CallTakesTheSubtitleWhateverTheNumberOfApplications) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  EXPECT_EQ(page->subtitle(), "Music ducked — a call is active.");
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

}  // namespace
}  // namespace quillmere
