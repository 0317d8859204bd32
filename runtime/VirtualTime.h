// A hand-cranked process for tests: clocks, executors and queues on one thread, in one deterministic order.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "runtime/ChangeSignal.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// Work runs in the order of its due times, then of its posts, whatever executor it was posted to.
/// One thread only. Nothing runs outside the run and advance calls.
class VirtualTime final : public Clocks {
 public:
  /// The wall clock starts at this date.
  explicit VirtualTime(Date start = Date{700000000.0});
  ~VirtualTime() override;

  [[nodiscard]] Date now() const override { return setting().at(now_); }
  [[nodiscard]] WallClockSetting setting() const override { return {start_, wallOffsetSeconds_}; }
  [[nodiscard]] const ChangeSignal& settings() const override { return settings_; }
  [[nodiscard]] MonotonicTime monotonicNow() const override { return now_; }
  /// Time passes, but nothing runs: the calling "thread" is blocked. Counted, for tests of polls.
  void sleepThread(Duration duration) override;
  [[nodiscard]] int threadSleepCount() const { return threadSleeps_; }

  /// Runs what is due now, and what that posts, until nothing is left.
  void runUntilIdle();
  /// Lets `duration` pass, running each piece of work at its time. Runs what is due now first.
  void advance(Duration duration);
  /// Runs what is due on one executor now, what that posts there too, and nothing else: called from within the work of
  /// another executor, it is the thread that was quicker.
  void runDueOn(Executor& executor);
  /// Moves the wall clock alone, as a user or a time server does.
  void jumpWallClock(double seconds);
  /// Lets the machine sleep: wall time passes, monotonic time does not.
  void suspendMachine(double seconds) { jumpWallClock(seconds); }
  /// Drops all that waits, and all that is posted later. Called by the destructor.
  void shutDown();

  /// The test's own thread counts as main while nothing runs.
  [[nodiscard]] Executor& main();
  [[nodiscard]] Executor& background();
  std::unique_ptr<SerialQueue> makeSerialQueue(const std::string& label);
  [[nodiscard]] Runtime runtime(LogSink& log);

 private:
  class VirtualExecutor;
  class VirtualSerialQueue;
  struct Item {
    VirtualExecutor* executor;
    Work work;
  };
  using Key = std::pair<MonotonicTime, std::uint64_t>;

  std::uint64_t enqueue(VirtualExecutor& executor, Duration delay, Work work);
  bool runNext(MonotonicTime limit);
  /// The executor's first piece of work that is due by then.
  std::optional<Item> takeNextOn(const Executor& executor, MonotonicTime limit);
  void run(Item item);

  MonotonicTime now_{};
  Date start_;
  double wallOffsetSeconds_ = 0.0;
  ChangeSignal settings_;
  int threadSleeps_ = 0;
  std::uint64_t lastSequence_ = 0;
  bool shutDown_ = false;
  std::map<Key, Item> items_;
  std::map<std::uint64_t, MonotonicTime> dueTimes_;
  VirtualExecutor* running_ = nullptr;
  std::unique_ptr<VirtualExecutor> main_;
  std::unique_ptr<VirtualExecutor> background_;
};

}  // namespace quillmere
