// The audio host under test with everything it needs, and the sequence in which the engine uses a tap.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/PipeWireAudioHardware.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere::test {

/// Runs posted work when it is told to.
class QueueExecutor final : public Executor {
 public:
  void post(Work work) override;
  TimerID postAfter(Duration delay, Work work) override;
  void cancelTimer(TimerID timer) override;
  [[nodiscard]] bool isCurrent() const override { return true; }
  void runAll();

 private:
  std::mutex mutex_;
  std::deque<Work> queue_;
};

class MemoryLog final : public LogSink {
 public:
  void write(LogLevel level, std::string_view subsystem, std::string_view category, std::string_view message) override;
  [[nodiscard]] bool contains(std::string_view text) const;
  [[nodiscard]] std::string all() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

struct Machine {
  explicit Machine(PipeWireOptions options = {}) : audio(main, log, defaultApplicationIdentifier, std::move(options)) {}

  QueueExecutor main;
  MemoryLog log;
  PipeWireAudioHardware audio;

  [[nodiscard]] std::vector<AudioObjectID> list(std::uint32_t selector) const;
  [[nodiscard]] std::string text(AudioObjectID object, std::uint32_t selector) const;
  [[nodiscard]] std::uint32_t number(AudioObjectID object, std::uint32_t selector) const;
  /// 0 where there is none.
  [[nodiscard]] AudioObjectID device(const std::string& uid) const;
  [[nodiscard]] AudioObjectID process(const std::string& identifier) const;
  [[nodiscard]] AudioObjectID waitForProcess(const std::string& identifier) const;
  /// The process is there and plays.
  [[nodiscard]] bool waitForSound(const std::string& identifier) const;
  [[nodiscard]] std::string defaultOutput() const;
};

/// A tap with an IO block as the engine would build and use it.
class TapUnderTest {
 public:
  /// Builds all and starts; throws where a step fails. Without an output it follows the default.
  TapUnderTest(Machine& machine, const std::string& identifier, float gain, const std::string& output = {});
  /// Stops and destroys all if that has not been done.
  ~TapUnderTest();
  TapUnderTest(const TapUnderTest&) = delete;
  TapUnderTest& operator=(const TapUnderTest&) = delete;

  void setGain(float gain) { state_->target = gain; }
  [[nodiscard]] float appliedGain() const { return state_->current; }
  [[nodiscard]] std::uint64_t calls() const { return state_->calls; }
  /// As the tap tells its format, in Hz.
  [[nodiscard]] double rate() const;
  /// The policy (SCHED_OTHER, SCHED_FIFO, ...) of the thread that called the IO block last; -1 before the first call.
  [[nodiscard]] int schedulingPolicy() const { return state_->schedulingPolicy; }
  void end();

 private:
  struct State {
    std::atomic<float> target{1.0F};
    std::atomic<float> current{1.0F};
    std::atomic<std::uint64_t> calls{0};
    std::atomic<int> schedulingPolicy{-1};
    std::atomic<bool> isStopped{false};
    std::atomic<bool> wasCalledAfterStop{false};
  };
  Machine& machine_;
  std::shared_ptr<State> state_;
  AudioObjectID tap_ = 0;
  AudioObjectID device_ = 0;
  IOProcID proc_ = 0;
};

}  // namespace quillmere::test
