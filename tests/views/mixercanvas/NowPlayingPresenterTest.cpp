// The strip of what plays, without a window.
#include "views/mixercanvas/NowPlayingPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"
#include "platform/MediaKeys.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NowPlayingStrip : public ViewsFixture {
 protected:
  NowPlayingStrip() { startWithSounding({}); }
  void TearDown() override { strip.reset(); }
  /// A player of this process tells of a track; 0 for nobody.
  void play(NowPlayingInfo info, std::int32_t pid = 0) {
    box->player.setInfo(std::move(info));
    box->player.setApplicationPID(pid);
    box->advanceSeconds(1.1);
    if (!strip) strip = std::make_unique<NowPlayingPresenter>(services());
  }

  std::unique_ptr<NowPlayingPresenter> strip;
};

TEST_F(NowPlayingStrip, NothingPlaysNothingIsShown) {
  play({});
  EXPECT_FALSE(strip->shown());
  EXPECT_EQ(strip->title(), "");
}

TEST_F(NowPlayingStrip, TrackIsShownWithItsArtistAndItsPlayer) {
  play({{nowplaying::title, std::string("So What")},
        {nowplaying::artist, std::string("Miles Davis")},
        {nowplaying::playbackRate, 1.0}},
       box->pidOf(spotify));
  EXPECT_TRUE(strip->shown());
  EXPECT_EQ(strip->title(), "So What");
  EXPECT_EQ(strip->artist(), "Miles Davis");
  EXPECT_EQ(strip->sourceText(), "· Spotify");
  EXPECT_TRUE(strip->playing());
  EXPECT_EQ(strip->iconSource().scheme(), "image");
}

TEST_F(NowPlayingStrip, TrackOfNobodyIsOfAnUnknownPlayerWithoutAnIcon) {
  play({{nowplaying::title, std::string("So What")}});
  EXPECT_EQ(strip->sourceText(), "· Unknown");
  EXPECT_TRUE(strip->iconSource().isEmpty());
  EXPECT_EQ(strip->artist(), "");
}

TEST_F(NowPlayingStrip, MiddleButtonTellsWhatItDoes) {
  play({{nowplaying::title, std::string("So What")}, {nowplaying::playbackRate, 0.0}});
  EXPECT_EQ(strip->playSymbol(), "play.fill");
  EXPECT_EQ(strip->playText(), "Play");
  play({{nowplaying::title, std::string("So What")}, {nowplaying::playbackRate, 1.0}});
  EXPECT_EQ(strip->playSymbol(), "pause.fill");
  EXPECT_EQ(strip->playText(), "Pause");
}

TEST_F(NowPlayingStrip, EachButtonPressesItsKey) {
  play({{nowplaying::title, std::string("So What")}, {nowplaying::playbackRate, 1.0}}, box->pidOf(spotify));
  strip->previous();
  strip->togglePlayPause();
  strip->next();
  EXPECT_THAT(box->keys.pressed(), ElementsAre(mediakey::previous, mediakey::play, mediakey::next));
}

TEST_F(NowPlayingStrip, PlayAndPauseDoesNothingWhileNothingIsShown) {
  play({});
  strip->togglePlayPause();
  EXPECT_THAT(box->keys.pressed(), IsEmpty());
}

TEST_F(NowPlayingStrip, PositionThatGoesOnTellsNothing) {
  play({{nowplaying::title, std::string("So What")}, {nowplaying::elapsedTime, 1.0}});
  QSignalSpy told(strip.get(), &NowPlayingPresenter::changed);
  for (const double position : {2.0, 3.0, 4.0}) {
    play({{nowplaying::title, std::string("So What")}, {nowplaying::elapsedTime, position}});
  }
  EXPECT_EQ(told.count(), 0);
  play({{nowplaying::title, std::string("Blue in Green")}});
  EXPECT_EQ(told.count(), 1);
}

}  // namespace
}  // namespace quillmere
