#include "TapRealtime.h"

#include <spa/buffer/buffer.h>
#include <spa/node/io.h>
#include <spa/node/node.h>

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

/// The samples that were handed over at an input; null where there are fewer than wanted, or only silence.
QUILLMERE_REALTIME const float* takeSamples(TapPort& port, std::size_t frames) {
  auto* io = port.io;
  if (io == nullptr || io->status != SPA_STATUS_HAVE_DATA) return nullptr;
  // Given back at once: nobody writes there before the next cycle.
  io->status = SPA_STATUS_NEED_DATA;
  if (io->buffer_id >= port.bufferCount) return nullptr;
  const auto& data = port.buffers[io->buffer_id]->datas[0];
  if ((static_cast<std::uint32_t>(data.chunk->flags) & SPA_CHUNK_FLAG_EMPTY) != 0) return nullptr;
  const auto offset = std::min(data.chunk->offset, data.maxsize);
  const auto bytes = std::min(data.chunk->size, data.maxsize - offset);
  if (bytes / sizeof(float) < frames) return nullptr;
  return reinterpret_cast<const float*>(static_cast<const std::byte*>(data.data) + offset);
}

}  // namespace

// --- control side ----------------------------------------------------------------------------------------------------

void TapRealtime::setInputs(std::span<const ChannelShare> shares) {
  inputCount_ = std::min(shares.size(), inputs_.size());
  inputs_ = {};
  std::copy_n(shares.begin(), inputCount_, shares_.begin());
}

void TapRealtime::setBuffers(TapPort& port, std::span<spa_buffer* const> buffers) {
  port.bufferCount = static_cast<std::uint32_t>(std::min(buffers.size(), port.buffers.size()));
  std::copy_n(buffers.begin(), port.bufferCount, port.buffers.begin());
  port.freeBuffers = (1U << port.bufferCount) - 1;
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

void TapRealtime::takeInputs(std::size_t frames) {
  auto* mixed = input_.data();
  // Nearly always there are a left and a right and nothing else.
  const float* leftSamples = nullptr;
  const float* rightSamples = nullptr;
  std::array<const float*, mostChannels> others;
  std::array<ChannelShare, mostChannels> shares;
  std::size_t otherCount = 0;
  for (std::size_t place = 0; place < inputCount_; ++place) {
    const auto* samples = takeSamples(inputs_[place], frames);
    if (samples == nullptr) continue;
    if (leftSamples == nullptr && shares_[place] == leftShare) {
      leftSamples = samples;
    } else if (rightSamples == nullptr && shares_[place] == rightShare) {
      rightSamples = samples;
    } else {
      shares[otherCount] = shares_[place];
      others[otherCount++] = samples;
    }
  }
  if (leftSamples != nullptr && rightSamples != nullptr) {
    for (std::size_t frame = 0; frame < frames; ++frame) {
      mixed[2 * frame] = leftSamples[frame];
      mixed[2 * frame + 1] = rightSamples[frame];
    }
  } else {
    std::memset(mixed, 0, frames * bytesPerFrame);
    for (std::size_t frame = 0; leftSamples != nullptr && frame < frames; ++frame) {
      mixed[2 * frame] = leftSamples[frame];
    }
    for (std::size_t frame = 0; rightSamples != nullptr && frame < frames; ++frame) {
      mixed[2 * frame + 1] = rightSamples[frame];
    }
  }
  for (std::size_t place = 0; place < otherCount; ++place) {
    const auto share = shares[place];
    const auto* samples = others[place];
    for (std::size_t frame = 0; frame < frames; ++frame) {
      mixed[2 * frame] += share.left * samples[frame];
      mixed[2 * frame + 1] += share.right * samples[frame];
    }
  }
}

void TapRealtime::giveOutput(Output place, std::size_t frames) {
  auto& port = outputs_[place];
  auto* io = port.io;
  if (io == nullptr || port.bufferCount == 0 || io->status == SPA_STATUS_HAVE_DATA) return;
  if (io->buffer_id < port.bufferCount) port.freeBuffers |= 1U << io->buffer_id;
  io->buffer_id = SPA_ID_INVALID;
  io->status = SPA_STATUS_NEED_DATA;
  if (port.freeBuffers == 0) return;
  const auto id = static_cast<std::uint32_t>(std::countr_zero(port.freeBuffers));
  auto& data = port.buffers[id]->datas[0];
  if (data.maxsize < frames * sizeof(float)) return;
  auto* samples = static_cast<float*>(data.data);
  if (place == mono) {
    for (std::size_t frame = 0; frame < frames; ++frame) {
      samples[frame] = monoGain_ * (output_[2 * frame] + output_[2 * frame + 1]);
    }
  } else {
    for (std::size_t frame = 0; frame < frames; ++frame) samples[frame] = output_[2 * frame + place];
  }
  data.chunk->offset = 0;
  data.chunk->size = static_cast<std::uint32_t>(frames * sizeof(float));
  data.chunk->stride = sizeof(float);
  data.chunk->flags = 0;
  port.freeBuffers &= ~(1U << id);
  io->buffer_id = id;
  io->status = SPA_STATUS_HAVE_DATA;
}

int TapRealtime::cycle() {
  const auto* position = position_;
  const auto frames =
      position == nullptr ? 0 : static_cast<std::size_t>(std::min<std::uint64_t>(position->clock.duration, mostFrames));
  takeInputs(frames);
  process(input_.data(), output_.data(), static_cast<std::uint32_t>(frames));
  for (const auto place : {left, right, mono}) giveOutput(place, frames);
  return SPA_STATUS_NEED_DATA | SPA_STATUS_HAVE_DATA;
}

}  // namespace quillmere::pipewire
