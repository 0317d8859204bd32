// What each channel of an application contributes to left and right.
#include "platform/linux/pipewire/ChannelShares.h"

#include <gtest/gtest.h>
#include <spa/param/audio/raw.h>

namespace quillmere::pipewire::test {
namespace {

using Positions = std::vector<std::uint32_t>;

TEST(ChannelShares, StereoStaysAsItIs) {
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR}),
            (std::vector<ChannelShare>{leftShare, rightShare}));
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_FL}),
            (std::vector<ChannelShare>{rightShare, leftShare}));
}

TEST(ChannelShares, ASingleChannelIsHeardOnBothSidesWhateverItIsCalled) {
  for (const std::uint32_t position : {SPA_AUDIO_CHANNEL_MONO, SPA_AUDIO_CHANNEL_FC, SPA_AUDIO_CHANNEL_FL,
                                       SPA_AUDIO_CHANNEL_AUX0, SPA_AUDIO_CHANNEL_LFE}) {
    EXPECT_EQ(channelShares(Positions{position}), std::vector<ChannelShare>{bothSides});
  }
}

TEST(ChannelShares, OfSurroundCentreAndSidesComeThreeDecibelsDownAndTheBassIsLeftOut) {
  const auto shares = channelShares(Positions{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_FC,
                                              SPA_AUDIO_CHANNEL_LFE, SPA_AUDIO_CHANNEL_SL, SPA_AUDIO_CHANNEL_RR});
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
  EXPECT_EQ(channelShares(Positions{SPA_AUDIO_CHANNEL_AUX0, SPA_AUDIO_CHANNEL_AUX1, 0xFFFFFFFFU}),
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
