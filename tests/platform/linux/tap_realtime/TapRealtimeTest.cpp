// Proof that a tap's process callbacks allocate nothing, lock nothing and enter no system call of their own.
// The streams are stand-ins: what the audio server's library does inside its calls is not looked at here.
#include <gtest/gtest.h>
#include <pipewire/stream.h>

#include <array>
#include <vector>

#include "TrappedCalls.h"
#include "WithoutSystemCalls.h"
#include "platform/linux/pipewire/TapRealtime.h"

namespace {

constexpr std::uint32_t mostFrames = 2048;

/// One of the two streams: a few buffers that go round.
struct FakeStream {
  struct Slot {
    std::array<std::vector<float>, 2> samples{std::vector<float>(mostFrames, 0.25F),
                                              std::vector<float>(mostFrames, -0.5F)};
    std::array<spa_chunk, 2> chunks{};
    std::array<spa_data, 2> datas{};
    spa_buffer buffer{};
    pw_buffer handle{};
  };
  std::array<Slot, 3> slots;
  std::array<pw_buffer*, 4> queue{};
  std::size_t queued = 0;
  /// What was given back, and how often anything was.
  pw_buffer* lastReturned = nullptr;
  int returns = 0;

  FakeStream() {
    for (auto& slot : slots) {
      for (std::size_t channel = 0; channel < 2; ++channel) {
        slot.datas[channel].data = slot.samples[channel].data();
        slot.datas[channel].maxsize = mostFrames * sizeof(float);
        slot.datas[channel].chunk = &slot.chunks[channel];
      }
      slot.buffer.n_datas = 2;
      slot.buffer.datas = slot.datas.data();
      slot.handle.buffer = &slot.buffer;
    }
  }
  void push(pw_buffer* buffer) { queue.at(queued++) = buffer; }
  pw_buffer* pop() {
    if (queued == 0) return nullptr;
    auto* first = queue[0];
    for (std::size_t i = 1; i < queued; ++i) queue.at(i - 1) = queue.at(i);
    --queued;
    return first;
  }
};

FakeStream* asFake(pw_stream* stream) { return reinterpret_cast<FakeStream*>(stream); }

int triggers = 0;

}  // namespace

// These win over the library's for this program.
extern "C" {
pw_buffer* pw_stream_dequeue_buffer(pw_stream* stream) { return asFake(stream)->pop(); }
int pw_stream_queue_buffer(pw_stream* stream, pw_buffer* buffer) {
  asFake(stream)->lastReturned = buffer;
  ++asFake(stream)->returns;
  return 0;
}
int pw_stream_trigger_process(pw_stream*) {
  ++triggers;
  return 0;
}
}

namespace quillmere::pipewire {
namespace {

struct TapRealtimeTest : testing::Test {
  FakeStream capture;
  FakeStream playback;
  TapRealtime tap;
  int blockCalls = 0;
  IOBlock block = [this](const AudioBufferList& input, const AudioBufferList& output) {
    ++blockCalls;
    const auto* from = input.buffers[0].data;
    auto* to = output.buffers[0].data;
    for (std::uint32_t i = 0; i < input.buffers[0].byteCount / sizeof(float); ++i) to[i] = 0.5F * from[i];
  };

  TapRealtimeTest() {
    triggers = 0;
    tap.setStreams(reinterpret_cast<pw_stream*>(&capture), reinterpret_cast<pw_stream*>(&playback));
    tap.setRate(48000);
    tap.setPlaying(true);
  }

  /// What the graph does in a cycle: the capturing side gets sound, then the playing side is asked for it.
  void cycle(std::uint32_t frames, bool isCaptured = true) {
    auto& from = capture.slots[0];
    for (auto& chunk : from.chunks) {
      chunk.size = frames * sizeof(float);
      chunk.offset = 0;
    }
    capture.queued = 0;
    if (isCaptured) capture.push(&from.handle);
    playback.queued = 0;
    playback.push(&playback.slots[0].handle);
    TapRealtime::onCaptureProcess(&tap);
    TapRealtime::onPlaybackProcess(&tap);
  }

  /// Every order, long enough to come to rest; every size; nothing captured; nothing to play into.
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
    playback.queued = 0;
    TapRealtime::onPlaybackProcess(&tap);
    tap.setPlaying(false);
    cycle(256);
  }

  [[nodiscard]] float played(std::size_t channel, std::size_t frame) const {
    return playback.slots[0].samples.at(channel).at(frame);
  }
};

TEST_F(TapRealtimeTest, APlayingSideThatStartsLateHearsTheNewestSoundAndOnlyOneBufferWasKeptForIt) {
  tap.startPlain(&block);
  tap.setPlaying(false);
  pw_buffer* kept = nullptr;
  float level = 0.1F;
  for (auto& slot : capture.slots) {
    for (auto& chunk : slot.chunks) chunk.size = 64 * sizeof(float);
    for (auto& samples : slot.samples) samples.assign(mostFrames, level *= 2.0F);
    capture.push(&slot.handle);
    TapRealtime::onCaptureProcess(&tap);
    EXPECT_EQ(capture.lastReturned, kept) << "the older one has gone back";
    kept = &slot.handle;
  }
  EXPECT_EQ(capture.returns, 2);
  playback.push(&playback.slots[0].handle);
  TapRealtime::onPlaybackProcess(&tap);
  EXPECT_FLOAT_EQ(played(0, 63), capture.slots[2].samples[0][63] / 2.0F);
  EXPECT_EQ(capture.returns, 3);
  EXPECT_EQ(capture.lastReturned, kept);
}

TEST_F(TapRealtimeTest, ASecondBufferInTheQueueIsNotLeftThereToDelayTheSound) {
  tap.startPlain(&block);
  for (auto& slot : capture.slots) {
    for (auto& chunk : slot.chunks) chunk.size = 64 * sizeof(float);
  }
  capture.slots[1].samples[0].assign(mostFrames, 0.75F);
  capture.push(&capture.slots[0].handle);
  TapRealtime::onCaptureProcess(&tap);
  capture.push(&capture.slots[1].handle);
  playback.push(&playback.slots[0].handle);
  TapRealtime::onPlaybackProcess(&tap);
  EXPECT_FLOAT_EQ(played(0, 63), 0.375F);
  EXPECT_EQ(capture.returns, 2);
}

TEST_F(TapRealtimeTest, ACyclePlaysWhatTheBlockMadeOfTheCapturedSound) {
  tap.startPlain(&block);
  cycle(256);
  EXPECT_EQ(blockCalls, 1);
  EXPECT_EQ(triggers, 1);
  for (const std::size_t frame : {0, 100, 255}) {
    EXPECT_FLOAT_EQ(played(0, frame), 0.125F);
    EXPECT_FLOAT_EQ(played(1, frame), -0.25F);
  }
  EXPECT_FLOAT_EQ(played(0, 256), 0.25F) << "beyond the cycle";
  EXPECT_EQ(playback.slots[0].chunks[1].size, 256U * sizeof(float));
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
