// What a detour does to the sound: takes it out of where it goes by itself, and hands it to a tap.
#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <vector>

#include "ChannelShares.h"
#include "runtime/Threads.h"

namespace quillmere::pipewire {

/// An input carries what somebody else sends to a port; the inverse goes into that same port and cancels it there, to
/// the last bit: both are of one cycle. As much of the sound as is cancelled goes to the tap.
class DetourMix {
 public:
  /// How long it takes to open or to close, in seconds.
  static constexpr double glideSeconds = 0.005;

  struct Cycle {
    /// One for each share, null where nothing is linked; `frames` samples each.
    std::span<const float* const> inputs;
    std::span<float* const> inverses;
    float* left = nullptr;
    float* right = nullptr;
    std::size_t frames = 0;
    /// Of the graph, in Hz.
    double rate = 48000.0;
  };

  /// What each input gives to left and right. Begins closed. [loop]
  explicit DetourMix(std::vector<ChannelShare> shares);
  DetourMix(const DetourMix&) = delete;
  DetourMix& operator=(const DetourMix&) = delete;

  /// Begins to open or to close. [loop]
  void setOpen(bool isOpen) { isOpen_.store(isOpen, std::memory_order_relaxed); }
  /// Nothing is cancelled any more. [any]
  [[nodiscard]] bool isClosed() const;

  /// [audio]
  QUILLMERE_REALTIME void process(const Cycle& cycle);

 private:
  std::vector<ChannelShare> shares_;
  std::atomic<bool> isOpen_ = false;
  /// 0 closed, 1 open.
  std::atomic<float> part_ = 0.0F;
};

}  // namespace quillmere::pipewire
