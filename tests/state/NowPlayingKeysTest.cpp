// The transport of the player that is shown.
#include "StateFixture.h"
#include "platform/MediaKeys.h"

namespace quillmere {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NowPlayingKeys : public StateFixture {};

TEST_F(NowPlayingKeys, EachPressesItsKeyAsAPersonDoes) {
  startWithThree();
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->advanceSeconds(1.0);
  state().previousTrack();
  state().togglePlayPause();
  state().nextTrack();
  EXPECT_THAT(box->keys.pressed(), ElementsAre(mediakey::previous, mediakey::play, mediakey::next));
  EXPECT_THAT(box->keys.purposes(), Each(mediakey::Purpose::person));
}

TEST_F(NowPlayingKeys, PlayAndPauseDoesNothingWhileNothingIsShown) {
  startWithThree();
  state().togglePlayPause();
  EXPECT_THAT(box->keys.pressed(), IsEmpty());
}

TEST_F(NowPlayingKeys, APausedTrackIsStillShownAndGoesOn) {
  startWithThree();
  box->player.setTrack("Song", false, box->pidOf(spotify));
  box->advanceSeconds(1.0);
  state().togglePlayPause();
  EXPECT_THAT(box->keys.pressed(), ElementsAre(mediakey::play));
}

TEST_F(NowPlayingKeys, AFieldChangesBySayingSoNotByTheKey) {
  startWithThree();
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->advanceSeconds(1.0);
  state().togglePlayPause();
  EXPECT_TRUE(state().nowPlaying()->value().isPlaying);
}

}  // namespace
}  // namespace quillmere
