// The focus page.
#include "views/focus/FocusCanvasPresenter.h"

#include <algorithm>
#include <utility>

#include "core/RemainingText.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {

using Kind = PomodoroPhase::Kind;

constexpr int longestFocus = 60;
constexpr int shortestFocus = 5;
constexpr int longestBreak = 30;
constexpr int shortestBreak = 1;

/// A minute's position on a slider is rarely a number that can be written down; it must not be cut to the minute
/// before.
constexpr double roundingError = 1e-9;

int minutesAt(double position, int shortest, int longest) {
  return std::clamp(static_cast<int>(position * longest + roundingError), shortest, longest);
}

}  // namespace

FocusCanvasPresenter::FocusCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      runtime_(services.runtime),
      cells_(services),
      picker_(services),
      ticker_(services.runtime, [this] { Q_EMIT timeChanged(); }) {
  subscriptions_.push_back(state_->pomodoroPhase().observe([this](const auto&) {
    tellAll();
    ticker_.setRunning(running());
  }));
  subscriptions_.push_back(state_->pomodoroFocusMinutes().observe([this](int) { tellAll(); }));
  subscriptions_.push_back(state_->pomodoroBreakMinutes().observe([this](int) { tellAll(); }));
  ticker_.setRunning(running());
}

QString FocusCanvasPresenter::heading() const {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::focus:
      return tr("Deep work in progress");
    case Kind::rest:
      return tr("Take a breath");
    case Kind::idle:
      break;
  }
  return tr("Ready to focus");
}

QString FocusCanvasPresenter::explanation() const {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::focus:
      return tr("Everything's quiet except your focus app.");
    case Kind::rest:
      return tr("Volumes restored. Stretch, water, breathe.");
    case Kind::idle:
      break;
  }
  return tr("Hit start, quillmere takes care of the noise.");
}

QString FocusCanvasPresenter::primaryText() const {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::focus:
      return tr("Skip to break");
    case Kind::rest:
      return tr("Skip to idle");
    case Kind::idle:
      break;
  }
  return tr("Start %n-minute focus", nullptr, *state_->pomodoroFocusMinutes());
}

QString FocusCanvasPresenter::primarySymbol() const {
  return running() ? QStringLiteral("forward.end.fill") : QStringLiteral("play.fill");
}

bool FocusCanvasPresenter::running() const { return state_->pomodoroPhase()->kind != Kind::idle; }

QString FocusCanvasPresenter::phaseWord() const {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::focus:
      return tr("focus");
    case Kind::rest:
      return tr("break");
    case Kind::idle:
      break;
  }
  return tr("ready");
}

QString FocusCanvasPresenter::timeText() const {
  if (!running()) return QStringLiteral("%1:00").arg(*state_->pomodoroFocusMinutes());
  return QString::fromStdString(formatRemaining(state_->pomodoroPhase()->endsAt, runtime_.clocks.now()));
}

double FocusCanvasPresenter::progress() const {
  if (!running()) return 0.0;
  const bool isFocus = state_->pomodoroPhase()->kind == Kind::focus;
  const double total = (isFocus ? *state_->pomodoroFocusMinutes() : *state_->pomodoroBreakMinutes()) * 60.0;
  return total > 0.0 ? std::clamp((total - remainingSeconds()) / total, 0.0, 1.0) : 1.0;
}

QString FocusCanvasPresenter::focusLengthText() const { return tr("%1 min").arg(*state_->pomodoroFocusMinutes()); }

double FocusCanvasPresenter::focusLength() const { return *state_->pomodoroFocusMinutes() / double{longestFocus}; }

QString FocusCanvasPresenter::breakLengthText() const { return tr("%1 min").arg(*state_->pomodoroBreakMinutes()); }

double FocusCanvasPresenter::breakLength() const { return *state_->pomodoroBreakMinutes() / double{longestBreak}; }

double FocusCanvasPresenter::focusStep() { return 1.0 / longestFocus; }

double FocusCanvasPresenter::breakStep() { return 1.0 / longestBreak; }

void FocusCanvasPresenter::primaryAction() {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::idle:
      state_->startPomodoroFocus();
      break;
    case Kind::focus:
      state_->skipPomodoroToBreak();
      break;
    case Kind::rest:
      state_->skipPomodoroToIdle();
      break;
  }
}

void FocusCanvasPresenter::cancel() { state_->cancelPomodoro(false); }

void FocusCanvasPresenter::setFocusLength(double position) {
  state_->setPomodoroFocusMinutes(minutesAt(position, shortestFocus, longestFocus));
}

void FocusCanvasPresenter::setBreakLength(double position) {
  state_->setPomodoroBreakMinutes(minutesAt(position, shortestBreak, longestBreak));
}

void FocusCanvasPresenter::addApp() {
  picker_.show(cells_.candidates(), [this](const InstalledApp& app) { cells_.add(app.bundleID); });
}

void FocusCanvasPresenter::tellAll() {
  Q_EMIT phaseChanged();
  Q_EMIT timeChanged();
}

double FocusCanvasPresenter::remainingSeconds() const {
  return std::max(0.0, runtime_.clocks.now().secondsUntil(state_->pomodoroPhase()->endsAt));
}

}  // namespace quillmere
