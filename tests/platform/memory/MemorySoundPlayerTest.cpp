// Sounds and media keys in memory.
#include "platform/memory/MemorySoundPlayer.h"

#include "platform/memory/MemoryMediaKeys.h"
#include "tests/platform/contract/SoundPlayerContract.h"

namespace quillmere {
namespace {

class MemorySoundHost {
 public:
  SoundPlayer& player() { return player_; }

 private:
  MemorySoundPlayer player_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, SoundPlayerContract, MemorySoundHost);

TEST(MemorySoundPlayer, RecordsWhatIsASound) {
  MemorySoundPlayer player;
  player.play("Glass");
  player.play("Basso");
  player.play("Hero");
  EXPECT_EQ(player.played(), (std::vector<std::string>{"Glass", "Hero"}));
}

TEST(MemoryMediaKeys, RecordsEveryPressAndLetsAPlayerAnswer) {
  MemoryMediaKeys keys;
  std::int32_t last = 0;
  keys.setOnPress([&](std::int32_t key) { last = key; });
  keys.press(mediakey::play, mediakey::Purpose::pause);
  keys.press(99, mediakey::Purpose::person);
  EXPECT_EQ(keys.pressed(), (std::vector<std::int32_t>{16, 99}));
  EXPECT_EQ(keys.purposes(), (std::vector{mediakey::Purpose::pause, mediakey::Purpose::person}));
  EXPECT_EQ(last, 99);
}

}  // namespace
}  // namespace quillmere
