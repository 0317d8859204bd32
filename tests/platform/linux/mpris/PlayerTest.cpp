// What players tell, read from dictionaries of any kind; and which player counts.
#include "platform/linux/mpris/Player.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <chrono>

namespace quillmere::mpris {
namespace {

GVariant* parsed(const std::string& text) {
  GError* error = nullptr;
  GVariant* value = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, &error);
  if (value == nullptr) ADD_FAILURE() << text << ": " << error->message;
  return value;
}

Track track(const std::string& metadata) {
  GVariant* value = parsed(metadata);
  auto result = trackOf(value);
  g_variant_unref(value);
  return result;
}

MonotonicTime at(double seconds) {
  return MonotonicTime(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
}

bool tell(Player& player, const std::string& properties, double seconds = 0.0) {
  static std::uint64_t sequence = 0;
  GVariant* value = parsed(properties);
  const bool changed = applyProperties(player, value, at(seconds), sequence);
  g_variant_unref(value);
  return changed;
}

TEST(Metadata, GivesTitleArtistsAlbumAndSeconds) {
  const auto result = track(
      "{'xesam:title': <'So What'>, 'xesam:artist': <['Miles Davis', 'John Coltrane']>, 'xesam:album': <'Kind of "
      "Blue'>,"
      " 'mpris:length': <int64 562500000>}");
  EXPECT_EQ(result, (Track{"So What", "Miles Davis, John Coltrane", "Kind of Blue", 562.5}));
}

TEST(Metadata, OneArtistAsATextCountsToo) {
  EXPECT_EQ(track("{'xesam:artist': <'Miles Davis'>}").artist, "Miles Davis");
}

TEST(Metadata, LengthMayBeAnyNumber) {
  for (const auto* length : {"uint64 2000000", "int32 2000000", "uint32 2000000", "2000000.0"}) {
    EXPECT_EQ(track(std::string("{'mpris:length': <") + length + ">}").durationSeconds, 2.0) << length;
  }
}

TEST(Metadata, ImpossibleLengthsAreAbsent) {
  for (const auto* length : {"int64 -1", "int64 9223372036854775807", "'long'", "true"}) {
    EXPECT_EQ(track(std::string("{'mpris:length': <") + length + ">}").durationSeconds, std::nullopt) << length;
  }
}

TEST(Metadata, WrongTypesAreAbsentFieldByField) {
  const auto result =
      track("{'xesam:title': <5>, 'xesam:artist': <[1, 2]>, 'xesam:album': <['a']>, 'mpris:length': <int64 1000000>}");
  EXPECT_EQ(result, (Track{std::nullopt, std::nullopt, std::nullopt, 1.0}));
}

TEST(Metadata, SomethingElseThanADictionaryIsAnEmptyTrack) {
  EXPECT_EQ(track("'nothing'"), Track{});
  EXPECT_EQ(track("[1, 2]"), Track{});
  EXPECT_EQ(trackOf(nullptr), Track{});
}

TEST(Metadata, AnEndlessTitleIsCut) {
  const auto title = track("{'xesam:title': <'" + std::string(1000000, 'x') + "'>}").title;
  EXPECT_EQ(title, std::string(1024, 'x'));
}

TEST(Metadata, AnEndlessTitleIsCutBetweenCharacters) {
  std::string text;
  for (int index = 0; index < 1000; ++index) text += "\xE2\x82\xAC";
  const auto title = track("{'xesam:title': <'" + text + "'>}").title;
  ASSERT_TRUE(title);
  EXPECT_EQ(title->size(), 1023U);
}

TEST(Metadata, ManyArtistsEndSomewhere) {
  std::string list;
  for (int index = 0; index < 5000; ++index) list += (index == 0 ? "'" : ", '") + std::string("artist") + "'";
  const auto artist = track("{'xesam:artist': <[" + list + "]>}").artist;
  ASSERT_TRUE(artist);
  EXPECT_LE(artist->size(), 1024U);
}

TEST(PlayerProperties, StatusAndRateAreTakenOver) {
  Player player;
  EXPECT_TRUE(tell(player, "{'PlaybackStatus': <'Playing'>, 'Rate': <1.5>}"));
  EXPECT_TRUE(player.isPlaying());
  EXPECT_EQ(player.rate, 1.5);
  EXPECT_FALSE(tell(player, "{'PlaybackStatus': <'Playing'>}")) << "nothing new";
}

TEST(PlayerProperties, StrangeStatusIsNotPlaying) {
  Player player;
  tell(player, "{'PlaybackStatus': <'Playing'>}");
  tell(player, "{'PlaybackStatus': <7>}");
  EXPECT_FALSE(player.isPlaying());
  tell(player, "{'PlaybackStatus': <'Dancing'>}");
  EXPECT_FALSE(player.isPlaying());
}

TEST(PlayerProperties, StrangeRatesCountAsOne) {
  for (const auto* rate : {"0.0", "-1.0", "'fast'", "1e300"}) {
    Player player;
    tell(player, std::string("{'Rate': <") + rate + ">}");
    EXPECT_EQ(player.rate, 1.0) << rate;
  }
}

TEST(PlayerProperties, ThePositionRunsWhileItPlays) {
  Player player;
  tell(player, "{'PlaybackStatus': <'Playing'>, 'Position': <int64 10000000>, 'Rate': <2.0>}", 100.0);
  EXPECT_DOUBLE_EQ(*player.elapsedSeconds(at(103.0)), 16.0);
  tell(player, "{'PlaybackStatus': <'Paused'>}", 104.0);
  EXPECT_DOUBLE_EQ(*player.elapsedSeconds(at(200.0)), 18.0) << "it stands where it was paused";
}

TEST(PlayerProperties, ThePositionEndsWithTheTrack) {
  Player player;
  tell(player,
       "{'PlaybackStatus': <'Playing'>, 'Position': <int64 9000000>, "
       "'Metadata': <{'mpris:length': <int64 10000000>}>}",
       0.0);
  EXPECT_DOUBLE_EQ(*player.elapsedSeconds(at(500.0)), 10.0);
}

TEST(PlayerProperties, ANewTrackForgetsThePosition) {
  Player player;
  tell(player, "{'Position': <int64 9000000>, 'PlaybackStatus': <'Playing'>}");
  tell(player, "{'Metadata': <{'xesam:title': <'Next'>}>}");
  EXPECT_EQ(player.elapsedSeconds(at(1.0)), std::nullopt);
}

TEST(PlayerProperties, NegativePositionsAreUnknown) {
  Player player;
  tell(player, "{'Position': <int64 -5>}");
  EXPECT_EQ(player.elapsedSeconds(at(0.0)), std::nullopt);
}

class CountingPlayer : public ::testing::Test {
 protected:
  Player& add(const std::string& name) {
    auto& player = players_[name];
    player.busName = name;
    player.discovered = players_.size();
    return player;
  }
  std::string counting() {
    const auto* player = countingPlayer(players_);
    return player == nullptr ? "" : player->busName;
  }
  Players players_;
};

TEST_F(CountingPlayer, NobodyCountsWhereThereIsNobody) { EXPECT_EQ(counting(), ""); }

TEST_F(CountingPlayer, OneThatHasToldNothingDoesNotCount) {
  add("a");
  EXPECT_EQ(counting(), "");
}

TEST_F(CountingPlayer, ThePlayingOneCounts) {
  tell(add("a"), "{'PlaybackStatus': <'Paused'>}");
  tell(add("b"), "{'PlaybackStatus': <'Playing'>}");
  tell(add("c"), "{'PlaybackStatus': <'Stopped'>}");
  EXPECT_EQ(counting(), "b");
}

TEST_F(CountingPlayer, ElseTheOneThatPlayedLast) {
  auto& a = add("a");
  auto& b = add("b");
  tell(a, "{'PlaybackStatus': <'Playing'>}");
  tell(b, "{'PlaybackStatus': <'Playing'>}");
  EXPECT_EQ(counting(), "b") << "of two that play, the later one";
  tell(b, "{'PlaybackStatus': <'Paused'>}");
  EXPECT_EQ(counting(), "a");
  tell(a, "{'PlaybackStatus': <'Paused'>}");
  EXPECT_EQ(counting(), "b") << "it was the last to begin";
}

TEST_F(CountingPlayer, OfThoseThatNeverPlayedAPausedOneCounts) {
  tell(add("a"), "{'PlaybackStatus': <'Stopped'>}");
  tell(add("b"), "{'PlaybackStatus': <'Paused'>}");
  EXPECT_EQ(counting(), "b");
}

TEST_F(CountingPlayer, OtherwiseTheOneThatCameFirst) {
  tell(add("z"), "{'PlaybackStatus': <'Stopped'>}");
  tell(add("a"), "{'PlaybackStatus': <'Stopped'>}");
  EXPECT_EQ(counting(), "z");
}

}  // namespace
}  // namespace quillmere::mpris
