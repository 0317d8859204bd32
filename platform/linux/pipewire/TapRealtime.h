// The part of a tap that runs on [audio]: one cycle from the captured sound to the output, and the orders it obeys.
// Control and audio thread share atomics only; the audio thread never waits.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "HandoverGain.h"
#include "platform/AudioTypes.h"
#include "runtime/Threads.h"

struct pw_buffer;
struct pw_stream;
struct spa_buffer;

namespace quillmere::pipewire {

class TapRealtime {
 public:
  // Control side: all calls from one thread at a time.

  /// Before the streams run; null clears.
  void setStreams(pw_stream* capture, pw_stream* playback);
  void setRate(std::uint32_t rateHz);
  /// Whether the playing stream has been started. Before, it has nothing to convert with and must not be triggered.
  void setPlaying(bool isPlaying) { isPlaying_.store(isPlaying, std::memory_order_release); }
  /// A buffer of the capturing stream is taken away.
  void forget(const pw_buffer* buffer);
  /// The block is called from the next cycle on. It must stay where it is until stop() has returned.
  void startPlain(const IOBlock* block);
  /// The same, glided into from a linear gain.
  void startFrom(const IOBlock* block, float gain);
  /// The same, glided into from the gain of this tap's own release.
  void startFromRelease(const IOBlock* block);
  /// Begins the glide to unity; no call of the block follows the return. Waits for the end of a running cycle.
  void stop(float appliedGain);

  /// The glide after stop() waits where it is, until stop() or a start follows.
  void hold();

  [[nodiscard]] std::uint64_t cycles() const { return cycles_.load(std::memory_order_relaxed); }
  [[nodiscard]] bool isAtUnity() const { return atUnity_.load(std::memory_order_acquire); }
  /// What is heard of the tapped sound while it is released, linear.
  [[nodiscard]] float releaseGain() const { return releaseGain_.load(std::memory_order_relaxed); }

  // Process callbacks of the two streams; `data` is this object.
  QUILLMERE_REALTIME static void onCaptureProcess(void* data);
  QUILLMERE_REALTIME static void onPlaybackProcess(void* data);

  /// One cycle on interleaved stereo.
  QUILLMERE_REALTIME void process(float* input, float* output, std::uint32_t frames);

 private:
  enum class Order : std::uint8_t { silence, plain, from, fromRelease, release, hold };
  void give(Order order, float value);
  QUILLMERE_REALTIME void obey(std::uint64_t word);
  QUILLMERE_REALTIME void playCycle(const spa_buffer& from, const spa_buffer& to);

  std::atomic<pw_stream*> capture_{nullptr};
  std::atomic<pw_stream*> playback_{nullptr};
  std::atomic<bool> isPlaying_{false};
  /// Captured and not played yet.
  std::atomic<pw_buffer*> captured_{nullptr};
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

  struct {
    std::uint64_t obeyed = 0;
    Order order = Order::silence;
    HandoverGain gain;
  } audio_;  // Audio side only.

  /// The longest cycle that the daemon is ever configured for; what is longer is cut.
  static constexpr std::size_t mostFrames = 8192;
  /// The block takes interleaved frames, the graph one buffer a channel. Audio side only.
  std::array<float, 2 * mostFrames> input_{};
  std::array<float, 2 * mostFrames> output_{};
};

}  // namespace quillmere::pipewire
