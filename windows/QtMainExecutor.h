// The main thread's queue on Qt's event loop.
// One event wakes it for any number of posts, one timer watches the next deadline.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <deque>
#include <mutex>

#include "runtime/TimerStore.h"

namespace quillmere {

/// Made on the main thread after the application object; destroyed there.
class QtMainExecutor final : public QObject, public Executor {
 public:
  QtMainExecutor();
  ~QtMainExecutor() override;

  void post(Work work) override;
  TimerID postAfter(Duration delay, Work work) override;
  void cancelTimer(TimerID timer) override;
  [[nodiscard]] bool isCurrent() const override;

  /// Drops what is queued, now and later. Called by the destructor. [main]
  void shutDown();

 protected:
  bool event(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void wake();
  void runReady();
  void watchNextTimer();

  std::mutex mutex_;
  std::deque<Work> ready_;
  TimerStore timers_;
  bool wakePosted_ = false;
  bool closed_ = false;
  QBasicTimer timer_;
};

}  // namespace quillmere
