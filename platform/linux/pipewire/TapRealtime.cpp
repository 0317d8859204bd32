#include "TapRealtime.h"

#include <pipewire/stream.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <thread>

namespace quillmere::pipewire {
namespace {

constexpr std::uint32_t channels = 2;
constexpr std::uint32_t bytesPerFrame = channels * sizeof(float);

/// The newest buffer of the stream, or the one in hand; older ones go back unread.
QUILLMERE_REALTIME pw_buffer* newestBuffer(pw_stream* stream, pw_buffer* inHand) {
  pw_buffer* newest = inHand;
  while (pw_buffer* buffer = pw_stream_dequeue_buffer(stream)) {
    if (newest != nullptr) pw_stream_queue_buffer(stream, newest);
    newest = buffer;
  }
  return newest;
}

}  // namespace

// --- control side ----------------------------------------------------------------------------------------------------

void TapRealtime::setStreams(pw_stream* capture, pw_stream* playback) {
  capture_.store(capture, std::memory_order_release);
  playback_.store(playback, std::memory_order_release);
}

void TapRealtime::forget(const pw_buffer* buffer) {
  auto* gone = const_cast<pw_buffer*>(buffer);
  captured_.compare_exchange_strong(gone, nullptr, std::memory_order_acq_rel);
}

void TapRealtime::setRate(std::uint32_t rateHz) {
  coefficient_.store(HandoverGain::coefficient(rateHz), std::memory_order_relaxed);
  holdFrames_.store(static_cast<std::uint32_t>(rateHz * HandoverGain::holdSeconds), std::memory_order_relaxed);
  patienceFrames_.store(static_cast<std::uint32_t>(rateHz * HandoverGain::patienceSeconds), std::memory_order_relaxed);
}

void TapRealtime::startPlain(const IOBlock* block) {
  block_.store(block, std::memory_order_release);
  give(Order::plain, 0.0F);
}

void TapRealtime::startFrom(const IOBlock* block, float gain) {
  block_.store(block, std::memory_order_release);
  give(Order::from, gain);
}

void TapRealtime::startFromRelease(const IOBlock* block) {
  block_.store(block, std::memory_order_release);
  give(Order::fromRelease, releaseGain());
}

void TapRealtime::stop(float appliedGain) {
  atUnity_.store(false, std::memory_order_relaxed);
  releaseGain_.store(appliedGain, std::memory_order_relaxed);
  give(Order::release, appliedGain);
  // A cycle that runs now may have begun before the order; its end is waited for. The next one sees the order.
  const auto before = cycles_.load(std::memory_order_seq_cst);
  while (busy_.load(std::memory_order_seq_cst) && cycles_.load(std::memory_order_seq_cst) == before) {
    std::this_thread::yield();
  }
  block_.store(nullptr, std::memory_order_release);
}

void TapRealtime::hold() { give(Order::hold, releaseGain()); }

void TapRealtime::give(Order order, float value) {
  serial_ = (serial_ + 1) & 0xFFFFFFU;
  word_.store((static_cast<std::uint64_t>(serial_) << 40U) | (static_cast<std::uint64_t>(order) << 32U) |
                  std::bit_cast<std::uint32_t>(value),
              std::memory_order_seq_cst);
}

// --- audio side ------------------------------------------------------------------------------------------------------

void TapRealtime::obey(std::uint64_t word) {
  audio_.obeyed = word;
  audio_.order = static_cast<Order>((word >> 32U) & 0xFFU);
  const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(word));
  switch (audio_.order) {
    case Order::silence:
      break;
    case Order::plain:
      audio_.gain.beginPlain();
      break;
    case Order::from:
      audio_.gain.beginFrom(value);
      break;
    case Order::release:
      audio_.gain.release(value);
      break;
    // These two may come so soon after the release that no cycle has seen it.
    case Order::fromRelease:
      if (!audio_.gain.isReleasing()) audio_.gain.release(value);
      audio_.gain.beginFrom(audio_.gain.gain());
      break;
    case Order::hold:
      if (!audio_.gain.isReleasing()) audio_.gain.release(value);
      break;
  }
}

void TapRealtime::process(float* input, float* output, std::uint32_t frames) {
  busy_.store(true, std::memory_order_seq_cst);
  const auto word = word_.load(std::memory_order_seq_cst);
  if (word != audio_.obeyed) obey(word);
  const float coefficient = coefficient_.load(std::memory_order_relaxed);

  if (audio_.order == Order::release || audio_.order == Order::hold) {
    const auto holdFrames = audio_.order == Order::hold ? std::numeric_limits<std::size_t>::max()
                                                        : holdFrames_.load(std::memory_order_relaxed);
    audio_.gain.play(input, output, frames, coefficient, holdFrames);
    releaseGain_.store(audio_.gain.gain(), std::memory_order_relaxed);
    if (audio_.gain.isAtUnity()) atUnity_.store(true, std::memory_order_release);
  } else {
    // The block may leave the output as it is.
    std::memset(output, 0, std::size_t{frames} * bytesPerFrame);
    const auto* block = block_.load(std::memory_order_acquire);
    if (audio_.order != Order::silence && block != nullptr) {
      std::array<AudioBuffer, 1> inputs{AudioBuffer{2, frames * bytesPerFrame, input}};
      std::array<AudioBuffer, 1> outputs{AudioBuffer{2, frames * bytesPerFrame, output}};
      (*block)(AudioBufferList{inputs}, AudioBufferList{outputs});
      audio_.gain.blend(input, output, frames, coefficient, patienceFrames_.load(std::memory_order_relaxed));
    }
  }
  cycles_.fetch_add(1, std::memory_order_seq_cst);
  busy_.store(false, std::memory_order_release);
}

void TapRealtime::onCaptureProcess(void* data) {
  auto* self = static_cast<TapRealtime*>(data);
  auto* capture = self->capture_.load(std::memory_order_acquire);
  auto* playback = self->playback_.load(std::memory_order_acquire);
  if (capture == nullptr || playback == nullptr) return;
  // The playback side starts a cycle or two later than this one. Left in the queue until then, the buffers would all be
  // taken, none would be there to capture into, and this would never be called again. One has come, so one is taken;
  // the playback side looks for more.
  if (pw_buffer* buffer = pw_stream_dequeue_buffer(capture)) {
    if (auto* older = self->captured_.exchange(buffer, std::memory_order_acq_rel))
      pw_stream_queue_buffer(capture, older);
  }
  if (self->isPlaying_.load(std::memory_order_acquire)) pw_stream_trigger_process(playback);
}

void TapRealtime::playCycle(const spa_buffer& from, const spa_buffer& to) {
  if (from.n_datas < channels || to.n_datas < channels) return;
  std::array<const float*, channels> captured{};
  std::array<float*, channels> played{};
  std::size_t frames = mostFrames;
  for (std::uint32_t channel = 0; channel < channels; ++channel) {
    const auto& source = from.datas[channel];
    const auto& sink = to.datas[channel];
    if (source.data == nullptr || sink.data == nullptr) return;
    const auto offset = std::min(source.chunk->offset, source.maxsize);
    const auto bytes = std::min({source.chunk->size, source.maxsize - offset, sink.maxsize});
    frames = std::min<std::size_t>(frames, bytes / sizeof(float));
    captured[channel] = reinterpret_cast<const float*>(static_cast<const std::byte*>(source.data) + offset);
    played[channel] = static_cast<float*>(sink.data);
  }
  for (std::size_t frame = 0; frame < frames; ++frame) {
    input_[2 * frame] = captured[0][frame];
    input_[2 * frame + 1] = captured[1][frame];
  }
  process(input_.data(), output_.data(), static_cast<std::uint32_t>(frames));
  for (std::size_t frame = 0; frame < frames; ++frame) {
    played[0][frame] = output_[2 * frame];
    played[1][frame] = output_[2 * frame + 1];
  }
  for (std::uint32_t channel = 0; channel < channels; ++channel) {
    auto& chunk = *to.datas[channel].chunk;
    chunk.offset = 0;
    chunk.stride = sizeof(float);
    chunk.size = static_cast<std::uint32_t>(frames * sizeof(float));
  }
}

void TapRealtime::onPlaybackProcess(void* data) {
  auto* self = static_cast<TapRealtime*>(data);
  auto* capture = self->capture_.load(std::memory_order_acquire);
  auto* playback = self->playback_.load(std::memory_order_acquire);
  if (capture == nullptr || playback == nullptr) return;
  auto* in = newestBuffer(capture, self->captured_.exchange(nullptr, std::memory_order_acq_rel));
  if (in == nullptr) return;
  auto* out = pw_stream_dequeue_buffer(playback);
  if (out != nullptr) {
    self->playCycle(*in->buffer, *out->buffer);
    pw_stream_queue_buffer(playback, out);
  }
  pw_stream_queue_buffer(capture, in);
}

}  // namespace quillmere::pipewire
