// Pomodoro: one focus block that silences every application but one, one break that gives the sound back, and the end.
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

namespace {
constexpr auto tick = std::chrono::seconds(1);
}

void AppState::startPomodoroFocus() {
  QUILLMERE_CHECK_ON(runtime_.main, "startPomodoroFocus off the main thread");
  cancelPomodoro(true);
  pomodoroPhase_.set(PomodoroPhase::focus(runtime_.clocks.now().advancedBy(*pomodoroFocusMinutes_ * 60.0)));
  engageFocusAudio();
  runPomodoroTicker();
}

void AppState::engageFocusAudio() {
  // The snapshot is not emptied first: entries that nobody gave back stay unless overwritten.
  std::vector<std::string> silenced;
  auto apps = apps_.get();
  for (auto& app : apps) {
    preFocusGains_[app.bundleID] = app.gain;
    if (*pomodoroFocusBundleID_ == app.bundleID) continue;
    app.gain = 0.0F;
    silenced.push_back(app.bundleID);
  }
  apps_.set(std::move(apps));
  for (const auto& bundleID : silenced) sendGain(0.0F, bundleID);
}

void AppState::restoreFromFocusAudio() {
  restoreGains(preFocusGains_);
  preFocusGains_.clear();
}

void AppState::runPomodoroTicker() {
  pomodoroTicker_ = startTask(runtime_.main, [self = shared_from_this()](TaskContext& task) -> Async<void> {
    using Kind = PomodoroPhase::Kind;
    while (!task.isCancelled()) {
      const auto now = self->runtime_.clocks.now();
      if (self->pomodoroPhase_->kind == Kind::focus) {
        if (now < self->pomodoroPhase_->endsAt) {
          co_await task.sleep(tick);
          continue;
        }
        self->pomodoroPhase_.set(PomodoroPhase::rest(now.advancedBy(*self->pomodoroBreakMinutes_ * 60.0)));
        self->restoreFromFocusAudio();
        self->machine_.sounds->play("Glass");
      }
      // An observer of the new phase may have ended it all.
      if (task.isCancelled() || self->pomodoroPhase_->kind != Kind::rest) co_return;
      if (self->runtime_.clocks.now() < self->pomodoroPhase_->endsAt) {
        co_await task.sleep(tick);
        continue;
      }
      self->pomodoroPhase_.set(PomodoroPhase::idle());
      self->machine_.sounds->play("Hero");
      co_return;
    }
  });
}

void AppState::cancelPomodoro(bool silently) {
  QUILLMERE_CHECK_ON(runtime_.main, "cancelPomodoro off the main thread");
  pomodoroTicker_.cancel();
  pomodoroTicker_ = Task();
  if (!silently) restoreFromFocusAudio();
  pomodoroPhase_.set(PomodoroPhase::idle());
}

void AppState::skipPomodoroToBreak() {
  QUILLMERE_CHECK_ON(runtime_.main, "skipPomodoroToBreak off the main thread");
  if (pomodoroPhase_->kind != PomodoroPhase::Kind::focus) return;
  pomodoroPhase_.set(PomodoroPhase::focus(runtime_.clocks.now()));
}

void AppState::skipPomodoroToIdle() {
  QUILLMERE_CHECK_ON(runtime_.main, "skipPomodoroToIdle off the main thread");
  if (pomodoroPhase_->kind != PomodoroPhase::Kind::rest) return;
  pomodoroPhase_.set(PomodoroPhase::rest(runtime_.clocks.now()));
}

}  // namespace quillmere
