// The gain of streams that play beside the others of their application, on another output.
// The IO block has one caller at a time; these glide to the same target by themselves.
#pragma once

#include <atomic>
#include <memory>

#include "platform/AudioTypes.h"
#include "runtime/Threads.h"

namespace quillmere::pipewire {

class TapFollower {
 public:
  /// `target` is the linear gain to glide to, 0 to 1; it begins there. `rateHz` is the graph's. [loop]
  TapFollower(std::shared_ptr<const std::atomic<float>> target, double rateHz);
  TapFollower(const TapFollower&) = delete;
  TapFollower& operator=(const TapFollower&) = delete;

  /// [loop]
  void setRate(double rateHz);
  /// What is to be called once a cycle; lives as long as this. [loop]
  [[nodiscard]] const IOBlock* block() const { return &block_; }
  /// The linear gain applied last. [any]
  [[nodiscard]] float gain() const { return gain_.load(std::memory_order_relaxed); }

 private:
  QUILLMERE_REALTIME void process(const AudioBuffer& input, AudioBuffer& output);

  std::shared_ptr<const std::atomic<float>> target_;
  std::atomic<float> coefficient_;
  std::atomic<float> gain_;
  IOBlock block_;
};

}  // namespace quillmere::pipewire
