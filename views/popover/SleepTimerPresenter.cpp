// The sleep timer's control.
#include "views/popover/SleepTimerPresenter.h"

#include <iterator>
#include <utility>

#include "core/RemainingText.h"
#include "core/SleepChoices.h"
#include "state/MixerState.h"

namespace quillmere {

SleepTimerPresenter::SleepTimerPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, QObject* parent)
    : QObject(parent),
      state_(std::move(state)),
      runtime_(runtime),
      ticker_(runtime, [this] { Q_EMIT remainingChanged(); }) {
  std::vector<MenuEntry> entries;
  entries.reserve(std::size(sleepChoices) + 1);
  for (const int minutes : sleepChoices) {
    entries.push_back(
        {tr("%n minutes", nullptr, minutes), false, false, [this, minutes] { state_->startSleepTimer(minutes); }});
  }
  menu_.setEntries(std::move(entries));
  subscription_ = state_->sleepTimerEndsAt().observe([this](const auto&) {
    Q_EMIT runningChanged();
    Q_EMIT remainingChanged();
    followTime();
  });
}

bool SleepTimerPresenter::running() const { return state_->sleepTimerEndsAt()->has_value(); }

QString SleepTimerPresenter::remaining() const {
  const auto endsAt = *state_->sleepTimerEndsAt();
  return endsAt ? QString::fromStdString(formatRemaining(*endsAt, runtime_.clocks.now())) : QString();
}

void SleepTimerPresenter::setVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  if (visible) Q_EMIT remainingChanged();
  followTime();
}

void SleepTimerPresenter::cancel() { state_->cancelSleepTimer(); }

void SleepTimerPresenter::followTime() { ticker_.setRunning(visible_ && running()); }

}  // namespace quillmere
