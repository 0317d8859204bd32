// Work that is ready and work that waits for its time: the store behind every threaded executor.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/ParkingLot.h"
#include "runtime/TimerStore.h"

namespace quillmere {

/// Any number of threads put and take; a thread that takes comes back for more when the work is done.
///
/// A wake-up costs more than most of the work here. So a timer wakes one taker and nobody keeps watch meanwhile: the
/// parking lot's alarm stands at the next thing that must not wait. A taker that posts to its own queue, or leaves work
/// behind, calls nobody either: it will be back in a moment, and where it isn't, the alarm brings another.
class TimedQueue {
 public:
  /// For so long, work that is ready waits for a taker that is at work, while others sleep.
  static constexpr Duration patience = std::chrono::milliseconds(1);

  TimedQueue() : TimedQueue(makeParkingLot()) {}
  explicit TimedQueue(std::unique_ptr<ParkingLot> lot) : lot_(std::move(lot)) {}

  /// Work that would wait for longer than this, while every taker is held up, is told to `helpDue`: the time at which
  /// another taker has to come; absent once that is not needed. Called in order under the queue's lock, and must do no
  /// more than set an alarm. Before anybody takes or posts.
  static constexpr Duration helpPatience = std::chrono::milliseconds(20);
  void onHelpDue(std::function<void(std::optional<MonotonicTime>)> helpDue) { tellHelpDue_ = std::move(helpDue); }

  void post(Work work);
  TimerID postAfter(Duration delay, Work work);
  void cancelTimer(TimerID timer);
  /// Waits for the next piece of work; absent once the queue was closed.
  std::optional<Work> take();
  /// Ends all takers and drops what is queued, now and later. Work is destroyed on the calling thread.
  void close();

 private:
  void leaveBehind(MonotonicTime now);
  void setAlarm();
  void helpBy(MonotonicTime time);
  void setHelp(std::optional<MonotonicTime> time);

  std::mutex mutex_;
  std::unique_ptr<ParkingLot> lot_;
  std::deque<Work> ready_;
  TimerStore timers_;
  /// Takers in the lot, or on the way into it or out of it.
  std::size_t waiting_ = 0;
  /// One of them has been called and has not come yet.
  bool isCalled_ = false;
  /// When somebody else must come for what is ready; absent where nothing is, or where a call is under way for it.
  std::optional<MonotonicTime> helpDue_;
  /// As the lot was told last; absent where it may have rung since.
  std::optional<MonotonicTime> alarm_;
  std::function<void(std::optional<MonotonicTime>)> tellHelpDue_;
  std::optional<MonotonicTime> toldHelpDue_;
  bool closed_ = false;
};

}  // namespace quillmere
