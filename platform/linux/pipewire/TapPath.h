// What the director of taps asks of the node behind a tap. [loop]
#pragma once

#include <cstdint>

#include "platform/AudioTypes.h"

namespace quillmere::pipewire {

class TapPath {
 public:
  virtual ~TapPath() = default;
  /// It stands in the graph, is linked to its output, and the session manager knows it.
  [[nodiscard]] virtual bool isConnected() const = 0;
  /// Could not be opened, or was taken away: nothing plays through it any more.
  [[nodiscard]] virtual bool hasFailed() const = 0;
  /// Global id of the node that applications are moved to and that plays in their place.
  [[nodiscard]] virtual std::uint32_t node() const = 0;
  /// To be called whenever the graph has changed.
  virtual void graphChanged() = 0;

  /// Starts the block at once; it must stay where it is until stop() has returned.
  virtual void startPlain(const IOBlock* block) = 0;
  /// Starts it with a glide from a linear gain.
  virtual void startFrom(const IOBlock* block, float gain) = 0;
  /// Starts it with a glide from wherever this path's own release stands.
  virtual void startFromRelease(const IOBlock* block) = 0;
  /// No call of the block follows the return; the sound glides to unity.
  virtual void stop(float appliedGain) = 0;

  /// After stop(): the gain stays where it is until the next order.
  virtual void hold() = 0;

  /// A moment in the near future, in nanoseconds of the monotonic clock, when no cycle runs and the next is farthest;
  /// 0 while no cycles run.
  [[nodiscard]] virtual std::uint64_t quietMoment() const = 0;
  /// From now on it runs although nothing is linked to it yet.
  virtual void wakeUp() = 0;
  /// From now on it runs only while it is used.
  virtual void calmDown() = 0;

  /// The rate that it is played at, in Hz; 0 before the first cycle.
  [[nodiscard]] virtual double rate() const = 0;
  /// Cycles run so far.
  [[nodiscard]] virtual std::uint64_t cycles() const = 0;
  /// Whether the glide after stop() has arrived.
  [[nodiscard]] virtual bool isAtUnity() const = 0;
  /// Linear gain of the release.
  [[nodiscard]] virtual float releaseGain() const = 0;
};

}  // namespace quillmere::pipewire
