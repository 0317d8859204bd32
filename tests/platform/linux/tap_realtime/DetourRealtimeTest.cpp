// The proof that a detour's cycle allocates nothing, locks nothing and enters no system call.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "TrappedCalls.h"
#include "WithoutSystemCalls.h"
#include "platform/linux/pipewire/DetourMix.h"

namespace quillmere::pipewire {
namespace {

constexpr std::size_t longest = 2048;

struct DetourRealtimeTest : testing::Test {
  DetourMix mix{{leftShare, rightShare, {0.5F, 0.5F}}};
  std::vector<float> sound = std::vector<float>(longest, 0.5F);
  std::array<std::vector<float>, 5> heard;
  std::array<const float*, 3> inputs{sound.data(), sound.data(), nullptr};
  std::array<float*, 3> inverses{};

  DetourRealtimeTest() {
    for (auto& samples : heard) samples.resize(longest);
    inverses = {heard[0].data(), heard[1].data(), heard[2].data()};
  }
  void everyKindOfCycle() {
    for (const bool isOpen : {true, false, true, false}) {
      mix.setOpen(isOpen);
      for (const std::size_t frames : {longest, std::size_t{64}, std::size_t{1}, std::size_t{0}}) {
        mix.process({inputs, inverses, heard[3].data(), heard[4].data(), frames, 48000.0});
        mix.process({inputs, inverses, nullptr, nullptr, frames, 44100.0});
      }
    }
  }
};

TEST_F(DetourRealtimeTest, NothingIsAllocatedAndNothingLocked) {
  int count = 0;
  const char* first = nullptr;
  {
    const TrappedCalls trap;
    everyKindOfCycle();
    count = TrappedCalls::count();
    first = TrappedCalls::first();
  }
  EXPECT_EQ(count, 0) << first;
  EXPECT_TRUE(mix.isClosed());
}

TEST_F(DetourRealtimeTest, NoSystemCallIsEntered) {
  EXPECT_EQ(runWithoutSystemCalls([this] { everyKindOfCycle(); }), "survived");
}

}  // namespace
}  // namespace quillmere::pipewire
