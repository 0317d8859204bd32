// What each channel of an application contributes to left and right.
#include "platform/linux/pipewire/ChannelShares.h"

#include <gtest/gtest.h>
#include <spa/param/audio/raw.h>

namespace quillmere::pipewire::test {
namespace {

using Positions = std::vector<std::uint32_t>;

TEST(ChannelShares, StereoStaysAsItIs) {
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR}, 1.0F),
            (std::vector<ChannelShare>{leftShare, rightShare}));
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_FL}, 1.0F),
            (std::vector<ChannelShare>{rightShare, leftShare}));
}

TEST(ChannelShares, ASingleChannelIsHeardOnBothSidesAsTheLibraryWouldMixIt) {
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_MONO}, 1.0F), (std::vector<ChannelShare>{{1.0F, 1.0F}}));
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_MONO}, 0.5F), (std::vector<ChannelShare>{{0.5F, 0.5F}}));
  const auto old = singleChannelMix({0, 3, 65});
  EXPECT_EQ(old.input, threeDecibelsDown);
  EXPECT_EQ(old.output, threeDecibelsDown);
  const auto later = singleChannelMix({0, 3, 66});
  EXPECT_EQ(later.input, 1.0F);
  EXPECT_EQ(later.output, 0.5F);
}

TEST(ChannelShares, AStreamThatIsMadeOneChannelComesOutAsItWentIn) {
  for (const auto& version : {LibraryVersion{0, 3, 65}, LibraryVersion{1, 4, 2}}) {
    const auto mix = singleChannelMix(version);
    // Into both sides, and both into one.
    EXPECT_NEAR(2.0F * mix.input * mix.output, 1.0F, 1e-6F);
  }
}

TEST(LibraryVersion, IsReadPartByPart) {
  EXPECT_EQ(libraryVersion("0.3.65"), (LibraryVersion{0, 3, 65}));
  EXPECT_EQ(libraryVersion("1.4.2-rc1"), (LibraryVersion{1, 4, 2}));
  EXPECT_LT(libraryVersion("0.3.65"), libraryVersion("0.3.100"));
}

TEST(LibraryVersion, OneThatCannotBeReadIsNewerThanAllOthers) {
  for (const auto* text : {"", "garbage", "1", "1.4", "1.x.2", "."}) {
    EXPECT_GT(libraryVersion(text), (LibraryVersion{99, 0, 0})) << text;
  }
}

TEST(ChannelShares, OfSurroundCentreAndSidesComeThreeDecibelsDownAndTheBassIsLeftOut) {
  const auto shares = channelShares(Positions{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_FC,
                                              SPA_AUDIO_CHANNEL_LFE, SPA_AUDIO_CHANNEL_SL, SPA_AUDIO_CHANNEL_RR},
                                    1.0F);
  ASSERT_EQ(shares.size(), 6U);
  EXPECT_EQ(shares[0], leftShare);
  EXPECT_EQ(shares[1], rightShare);
  EXPECT_NEAR(shares[2].left * shares[2].left, 0.5F, 1e-6F);
  EXPECT_EQ(shares[2].left, shares[2].right);
  EXPECT_EQ(shares[3], ChannelShare{});
  EXPECT_NEAR(shares[4].left * shares[4].left, 0.5F, 1e-6F);
  EXPECT_EQ(shares[4].right, 0.0F);
  EXPECT_NEAR(shares[5].right * shares[5].right, 0.5F, 1e-6F);
  EXPECT_EQ(shares[5].left, 0.0F);
}

TEST(ChannelShares, ChannelsWithoutAPositionGoLeftAndRightInTurn) {
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_AUX0, SPA_AUDIO_CHANNEL_AUX1, 0xFFFFFFFFU}, 1.0F),
            (std::vector<ChannelShare>{leftShare, rightShare, leftShare}));
}

TEST(ChannelShares, NamesAreThoseOfTheDaemon) {
  EXPECT_EQ(channelName(SPA_AUDIO_CHANNEL_FL), "FL");
  EXPECT_EQ(channelName(SPA_AUDIO_CHANNEL_MONO), "MONO");
  EXPECT_EQ(channelName(SPA_AUDIO_CHANNEL_AUX0), "AUX0");
  EXPECT_EQ(channelName(0xFFFFFFFFU), "UNK");
}

}  // namespace
}  // namespace quillmere::pipewire::test
