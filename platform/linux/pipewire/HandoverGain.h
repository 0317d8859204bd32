// The glides at both ends of a tap: from what was heard before to what the IO block makes, and back to unity.
// Plain arithmetic on interleaved stereo; all of it runs on [audio].
#pragma once

#include <cstddef>

#include "runtime/Threads.h"

namespace quillmere::pipewire {

class HandoverGain {
 public:
  /// Time constant of both glides, in seconds.
  static constexpr double glideSeconds = 0.03;
  /// A release waits this long before it glides, so that a tap that is rebuilt at once is not heard to.
  static constexpr double holdSeconds = 0.05;
  /// A glide waits this long for the first sound.
  static constexpr double patienceSeconds = 0.2;

  /// Coefficient of the one-pole filter at a rate in Hz, at least 8000.
  static float coefficient(double rate);

  /// What the block makes is taken as it is from the first frame on.
  QUILLMERE_REALTIME void beginPlain();
  /// What the block makes is glided into, from the linear gain that was heard so far.
  QUILLMERE_REALTIME void beginFrom(float gain);
  /// From the gain the block used last, glides to unity.
  QUILLMERE_REALTIME void release(float appliedGain);

  /// `output` holds what the block made of `input`. Both: `frames` interleaved stereo frames. A glide begins with the
  /// first sound: the applications' streams arrive a cycle or two after the tap has begun to run. `patienceFrames` of
  /// silence and there is nothing to glide from.
  QUILLMERE_REALTIME void blend(const float* input, float* output, std::size_t frames, float coefficient,
                                std::size_t patienceFrames);
  /// `output` becomes `input` at the gain of the release.
  QUILLMERE_REALTIME void play(const float* input, float* output, std::size_t frames, float coefficient,
                               std::size_t holdFrames);

  [[nodiscard]] QUILLMERE_REALTIME bool isReleasing() const { return releasing_; }
  [[nodiscard]] QUILLMERE_REALTIME bool isAtUnity() const { return releasing_ && gain_ == 1.0F; }
  /// The gain of the release.
  [[nodiscard]] QUILLMERE_REALTIME float gain() const { return gain_; }

 private:
  bool releasing_ = false;
  float gain_ = 1.0F;
  std::size_t heldFrames_ = 0;
  std::size_t silentFrames_ = 0;
  /// Share of the gain of before in what is heard, and that gain.
  float share_ = 0.0F;
  float before_ = 1.0F;
};

}  // namespace quillmere::pipewire
