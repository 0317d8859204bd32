// The sleep timer: the master walks down to zero, linearly in wall-clock time, a step each second, the first at once.
// Only the field moves: neither the hardware nor, before the end, the store.
#include <algorithm>

#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

void AppState::startSleepTimer(int minutes) {
  QUILLMERE_CHECK_ON(runtime_.main, "startSleepTimer off the main thread");
  cancelSleepTimer();
  const double totalSeconds = minutes * 60.0;
  sleepTimerStartMaster_ = *masterGain_;
  sleepTimerStartedAt_ = runtime_.clocks.now();
  sleepTimerEndsAt_.set(sleepTimerStartedAt_->advancedBy(totalSeconds));

  sleepTimerTicker_ =
      startTask(runtime_.main, [self = shared_from_this(), totalSeconds](TaskContext& task) -> Async<void> {
        while (!task.isCancelled()) {
          if (!*self->sleepTimerEndsAt_) co_return;
          const double remaining = self->runtime_.clocks.now().secondsUntil(**self->sleepTimerEndsAt_);
          if (remaining <= 0.0) {
            self->masterGain_.set(0.0F);
            self->storeMasterGain();
            self->sleepTimerEndsAt_.set(std::nullopt);
            self->sleepTimerStartedAt_.reset();
            co_return;
          }
          const double elapsed = std::max(totalSeconds - remaining, 0.0);
          // A timer of no length still has time left only if the clock was set back under it: then nothing has elapsed.
          const double progress = elapsed > 0.0 ? elapsed / totalSeconds : 0.0;
          self->masterGain_.set(self->sleepTimerStartMaster_ * std::max(static_cast<float>(1.0 - progress), 0.0F));
          co_await task.sleep(std::chrono::seconds(1));
        }
      });
}

void AppState::cancelSleepTimer() {
  QUILLMERE_CHECK_ON(runtime_.main, "cancelSleepTimer off the main thread");
  sleepTimerTicker_.cancel();
  sleepTimerTicker_ = Task();
  sleepTimerEndsAt_.set(std::nullopt);
  sleepTimerStartedAt_.reset();
}

}  // namespace quillmere
