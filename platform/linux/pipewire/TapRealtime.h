// The part of a tap that runs on the audio thread: one cycle from the captured sound to the output, and its orders.
// Control and audio thread share atomics only; the audio thread never waits.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "ChannelShares.h"
#include "HandoverGain.h"
#include "platform/AudioTypes.h"
#include "runtime/Threads.h"

struct spa_buffer;
struct spa_io_buffers;
struct spa_io_position;

namespace quillmere::pipewire {

/// A port as [audio] sees it: where the graph hands its buffers over, and the buffers, of one channel each.
struct TapPort {
  static constexpr std::size_t mostBuffers = 16;

  spa_io_buffers* io = nullptr;
  std::array<spa_buffer*, mostBuffers> buffers{};
  std::uint32_t bufferCount = 0;
  /// Of an output: the buffers that nobody reads, a bit each.
  std::uint32_t freeBuffers = 0;
};

class TapRealtime {
 public:
  enum Output : std::uint8_t { left, right, mono };
  static constexpr std::size_t outputCount = 3;

  // The graph's side: on [audio] between two cycles, or while no cycle runs.

  /// As many inputs as shares, without buffers; those beyond `mostChannels` are left out. [audio]
  void setInputs(std::span<const ChannelShare> shares);
  /// Null where there is none of this number. [audio]
  [[nodiscard]] TapPort* input(std::size_t place) { return place < inputCount_ ? &inputs_[place] : nullptr; }
  /// [audio]
  [[nodiscard]] TapPort* output(std::size_t place) { return place < outputCount ? &outputs_[place] : nullptr; }
  /// [audio]
  static void setBuffers(TapPort& port, std::span<spa_buffer* const> buffers);
  /// Where the graph tells how long a cycle is; null: nothing is played. [audio]
  void setPosition(const spa_io_position* position) { position_ = position; }

  // Control side: [loop].

  /// The linear gain of both sides into the single output. Before the first cycle. [loop]
  void setMonoGain(float gain) { monoGain_ = gain; }
  /// [loop]
  void setRate(std::uint32_t rateHz);
  /// The block is called from the next cycle on. It must stay where it is until stop() has returned. [loop]
  void startPlain(const IOBlock* block);
  /// The same, glided into from a linear gain. [loop]
  void startFrom(const IOBlock* block, float gain);
  /// The same, glided into from the gain of this tap's own release. [loop]
  void startFromRelease(const IOBlock* block);
  /// Begins the glide to unity; no call of the block follows the return. Waits for the end of a running cycle. [loop]
  void stop(float appliedGain);

  /// The glide after stop() waits where it is, until stop() or a start follows. [loop]
  void hold();

  /// [loop]
  [[nodiscard]] std::uint64_t cycles() const { return cycles_.load(std::memory_order_relaxed); }
  /// [loop]
  [[nodiscard]] bool isAtUnity() const { return atUnity_.load(std::memory_order_acquire); }
  /// What is heard of the tapped sound while it is released, linear. [loop]
  [[nodiscard]] float releaseGain() const { return releaseGain_.load(std::memory_order_relaxed); }

  /// One cycle of the graph: from the inputs' buffers to the outputs'. Returns what spa_node_process returns. [audio]
  QUILLMERE_REALTIME int cycle();

  /// One cycle on interleaved stereo. [audio]
  QUILLMERE_REALTIME void process(float* input, float* output, std::uint32_t frames);

 private:
  enum class Order : std::uint8_t { silence, plain, from, fromRelease, release, hold };
  void give(Order order, float value);
  QUILLMERE_REALTIME void obey(std::uint64_t word);
  QUILLMERE_REALTIME void takeInputs(std::size_t frames);
  QUILLMERE_REALTIME void giveOutput(Output place, std::size_t frames);

  std::atomic<const IOBlock*> block_{nullptr};
  /// Serial number, order and its value in one word, so that the audio thread sees them together.
  std::atomic<std::uint64_t> word_{0};
  std::atomic<bool> busy_{false};
  std::atomic<float> coefficient_{HandoverGain::coefficient(48000.0)};
  std::atomic<std::uint32_t> holdFrames_{2400};
  std::atomic<std::uint32_t> patienceFrames_{9600};

  std::atomic<std::uint64_t> cycles_{0};
  std::atomic<bool> atUnity_{false};
  std::atomic<float> releaseGain_{1.0F};

  std::uint32_t serial_ = 0;  // Control side only.
  float monoGain_ = threeDecibelsDown;

  struct {
    std::uint64_t obeyed = 0;
    Order order = Order::silence;
    HandoverGain gain;
  } audio_;  // Audio side only.

  // The graph's side.
  std::size_t inputCount_ = 0;
  std::array<TapPort, mostChannels> inputs_{};
  std::array<ChannelShare, mostChannels> shares_{};
  std::array<TapPort, outputCount> outputs_{};
  const spa_io_position* position_ = nullptr;

  /// The longest cycle that the daemon is ever configured for; what is longer is cut.
  static constexpr std::size_t mostFrames = 8192;
  /// The block takes interleaved frames, the graph one buffer a channel. Audio side only. Both begin with a cache line
  /// and lie a whole number of pages apart, which is where the block's vectors fit and no read waits for a write.
  alignas(64) std::array<float, 2 * mostFrames> input_{};
  alignas(64) std::array<float, 2 * mostFrames> output_{};
};

}  // namespace quillmere::pipewire
