// A tap's cycle on ports of its own: what is heard, what goes back to whom, and the proof that it allocates nothing,
// locks nothing and enters no system call.
#include <gtest/gtest.h>
#include <spa/node/io.h>
#include <spa/node/node.h>

#include <array>
#include <vector>

#include "GraphPort.h"
#include "TrappedCalls.h"
#include "WithoutSystemCalls.h"
#include "platform/linux/pipewire/TapRealtime.h"

namespace quillmere::pipewire {
namespace {

struct TapRealtimeTest : testing::Test {
  GraphPort front[2]{GraphPort(0.25F), GraphPort(-0.5F)};
  GraphPort played[3]{GraphPort(9.0F), GraphPort(9.0F), GraphPort(9.0F)};
  spa_io_position position{};
  TapRealtime tap;
  int blockCalls = 0;
  IOBlock block = [this](const AudioBufferList& input, const AudioBufferList& output) {
    ++blockCalls;
    const auto* from = input.buffers[0].data;
    auto* to = output.buffers[0].data;
    for (std::uint32_t i = 0; i < input.buffers[0].byteCount / sizeof(float); ++i) to[i] = 0.5F * from[i];
  };

  TapRealtimeTest() {
    tap.setInputs(std::array{leftShare, rightShare});
    for (std::size_t place = 0; place < 2; ++place) front[place].plugInto(*tap.input(place));
    for (std::size_t place = 0; place < 3; ++place) played[place].plugInto(*tap.output(place));
    tap.setPosition(&position);
    tap.setRate(48000);
  }

  /// What the graph does: sound at the inputs, a cycle, and the device takes what came.
  int cycle(std::uint32_t frames, bool isCaptured = true) {
    position.clock.duration = frames;
    for (auto& port : front) {
      if (isCaptured) port.handOver(frames);
    }
    for (auto& port : played) port.io.status = SPA_STATUS_NEED_DATA;
    return tap.cycle();
  }

  /// Every order, long enough to come to rest; every size; nothing captured; nothing to play into; no graph.
  void everyKindOfCycle() {
    for (int i = 0; i < 10; ++i) cycle(1024);
    tap.startPlain(&block);
    for (int i = 0; i < 50; ++i) cycle(256);
    tap.stop(0.5F);
    for (int i = 0; i < 50; ++i) cycle(1024);
    tap.startFromRelease(&block);
    for (int i = 0; i < 50; ++i) cycle(2048);
    tap.stop(0.5F);
    tap.hold();
    cycle(64);
    tap.startFrom(&block, 0.8F);
    for (const std::uint32_t frames : {0U, 1U, 7U, 333U, 2048U}) cycle(frames);
    cycle(256, false);
    for (auto& port : played) port.io.status = SPA_STATUS_HAVE_DATA;
    tap.cycle();
    tap.setPosition(nullptr);
    cycle(256);
    tap.setPosition(&position);
  }
};

TEST_F(TapRealtimeTest, ACyclePlaysWhatTheBlockMadeOfTheCapturedSound) {
  tap.startPlain(&block);
  EXPECT_EQ(cycle(256), SPA_STATUS_NEED_DATA | SPA_STATUS_HAVE_DATA);
  EXPECT_EQ(blockCalls, 1);
  for (const std::size_t frame : {0, 100, 255}) {
    EXPECT_FLOAT_EQ(played[TapRealtime::left].at(frame), 0.125F);
    EXPECT_FLOAT_EQ(played[TapRealtime::right].at(frame), -0.25F);
    EXPECT_FLOAT_EQ(played[TapRealtime::mono].at(frame), -0.125F * threeDecibelsDown);
  }
  EXPECT_FLOAT_EQ(played[0].at(256), 9.0F) << "beyond the cycle";
  EXPECT_EQ(played[1].handedOver().chunk.size, 256U * sizeof(float));
  EXPECT_EQ(front[0].io.status, SPA_STATUS_NEED_DATA);
}

TEST_F(TapRealtimeTest, BuffersGoRoundAndNoneIsWrittenThatIsStillRead) {
  tap.startPlain(&block);
  cycle(64);
  const auto first = played[0].io.buffer_id;
  EXPECT_EQ(played[0].io.status, SPA_STATUS_HAVE_DATA);
  position.clock.duration = 64;
  front[0].handOver(64);
  front[0].slots[0].samples.assign(GraphPort::longest, 0.75F);
  tap.cycle();
  EXPECT_EQ(played[0].io.buffer_id, first);
  EXPECT_FLOAT_EQ(played[0].at(0), 0.125F) << "the device hasn't taken it yet";
  for (int i = 0; i < 10; ++i) {
    cycle(64);
    ASSERT_LT(played[0].io.buffer_id, 3U);
    EXPECT_FLOAT_EQ(played[0].at(0), 0.375F);
  }
}

TEST_F(TapRealtimeTest, WithoutAFreeBufferNothingIsHandedOver) {
  tap.startPlain(&block);
  played[0].plugInto(*tap.output(0), 1);
  cycle(64);
  played[0].io.buffer_id = SPA_ID_INVALID;
  cycle(64);
  EXPECT_EQ(played[0].io.status, SPA_STATUS_NEED_DATA);
  EXPECT_EQ(played[0].io.buffer_id, SPA_ID_INVALID);
  EXPECT_EQ(played[1].io.status, SPA_STATUS_HAVE_DATA);
}

TEST_F(TapRealtimeTest, AnInputWithoutSoundIsSilence) {
  tap.startPlain(&block);
  position.clock.duration = 64;
  front[0].handOver(64);
  front[1].handOver(64);
  front[1].slots[0].chunk.flags = SPA_CHUNK_FLAG_EMPTY;
  tap.cycle();
  EXPECT_FLOAT_EQ(played[0].at(10), 0.125F);
  EXPECT_FLOAT_EQ(played[1].at(10), 0.0F);
  cycle(64, false);
  EXPECT_FLOAT_EQ(played[0].at(10), 0.0F) << "nothing was handed over";
}

TEST_F(TapRealtimeTest, AnInputThatIsShorterThanTheCycleIsSilence) {
  tap.startPlain(&block);
  position.clock.duration = 64;
  front[0].handOver(63);
  front[1].handOver(64);
  tap.cycle();
  EXPECT_FLOAT_EQ(played[0].at(0), 0.0F);
  EXPECT_FLOAT_EQ(played[1].at(0), -0.25F);
}

TEST_F(TapRealtimeTest, AnOffsetBeyondTheBufferIsSilence) {
  tap.startPlain(&block);
  position.clock.duration = 64;
  front[0].handOver(64);
  front[0].slots[0].chunk.offset = 0xFFFFFFF0U;
  tap.cycle();
  EXPECT_FLOAT_EQ(played[0].at(0), 0.0F);
}

TEST_F(TapRealtimeTest, ABufferNumberThatWasNeverGivenIsSilence) {
  tap.startPlain(&block);
  position.clock.duration = 64;
  front[0].handOver(64);
  front[0].io.buffer_id = 17;
  tap.cycle();
  EXPECT_FLOAT_EQ(played[0].at(0), 0.0F);
}

TEST_F(TapRealtimeTest, ASingleChannelIsHeardOnBothSides) {
  tap.setInputs(std::array{bothSides});
  front[0].plugInto(*tap.input(0));
  tap.startPlain(&block);
  cycle(64);
  EXPECT_FLOAT_EQ(played[0].at(63), 0.125F * threeDecibelsDown);
  EXPECT_FLOAT_EQ(played[1].at(63), 0.125F * threeDecibelsDown);
  EXPECT_FLOAT_EQ(played[2].at(63), 0.125F) << "and comes out of a single channel as it went in";
}

TEST_F(TapRealtimeTest, ManyChannelsAreMixedByTheirShares) {
  GraphPort centre(1.0F);
  tap.setInputs(std::array{leftShare, rightShare, ChannelShare{0.5F, 0.25F}});
  front[0].plugInto(*tap.input(0));
  front[1].plugInto(*tap.input(1));
  centre.plugInto(*tap.input(2));
  centre.handOver(64);
  tap.startPlain(&block);
  cycle(64);
  EXPECT_FLOAT_EQ(played[0].at(63), 0.5F * (0.25F + 0.5F));
  EXPECT_FLOAT_EQ(played[1].at(63), 0.5F * (-0.5F + 0.25F));
}

TEST_F(TapRealtimeTest, WithoutALinkAnOutputIsLeftAlone) {
  tap.startPlain(&block);
  played[2].plugInto(*tap.output(2), 0);
  cycle(64);
  EXPECT_EQ(played[2].io.status, SPA_STATUS_NEED_DATA);
  EXPECT_FLOAT_EQ(played[2].slots[0].samples[0], 9.0F);
}

TEST_F(TapRealtimeTest, WithoutAGraphNothingIsPlayed) {
  tap.startPlain(&block);
  tap.setPosition(nullptr);
  cycle(64);
  EXPECT_FLOAT_EQ(played[0].slots[0].samples[0], 9.0F);
}

TEST_F(TapRealtimeTest, NothingIsAllocatedAndNothingIsLocked) {
  int count = 0;
  const char* first = nullptr;
  {
    const TrappedCalls trap;
    everyKindOfCycle();
    count = TrappedCalls::count();
    first = TrappedCalls::first();
  }
  EXPECT_EQ(count, 0) << first;
  EXPECT_GT(blockCalls, 100);
}

TEST_F(TapRealtimeTest, NoSystemCallIsEntered) {
  EXPECT_EQ(runWithoutSystemCalls([this] { everyKindOfCycle(); }), "survived");
}

}  // namespace
}  // namespace quillmere::pipewire
