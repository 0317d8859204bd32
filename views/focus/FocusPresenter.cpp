// The focus block's controls.
#include "views/focus/FocusPresenter.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "core/RemainingText.h"
#include "core/TextOrder.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {

using Kind = PomodoroPhase::Kind;

constexpr int longestFocus = 60;
constexpr int shortestFocus = 5;
constexpr int longestBreak = 30;
constexpr int shortestBreak = 1;

int minutesAt(double position, int shortest, int longest) {
  return std::clamp(static_cast<int>(position * longest), shortest, longest);
}

}  // namespace

FocusPresenter::FocusPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, QObject* parent)
    : QObject(parent), state_(std::move(state)), runtime_(runtime) {
  subscriptions_.push_back(state_->pomodoroPhase().observe([this](const auto&) {
    tellAll();
    scheduleTick();
  }));
  subscriptions_.push_back(state_->pomodoroFocusMinutes().observe([this](int) { tellAll(); }));
  subscriptions_.push_back(state_->pomodoroBreakMinutes().observe([this](int) { tellAll(); }));
  subscriptions_.push_back(state_->pomodoroFocusBundleID().observe([this](const auto&) { refreshApps(); }));
  subscriptions_.push_back(state_->focusCandidateBundleIDs().observe([this](const auto&) { refreshApps(); }));
  subscriptions_.push_back(state_->apps().observe([this](const auto&) { refreshApps(); }));
  refreshApps();
}

FocusPresenter::~FocusPresenter() {
  if (tickTimer_ != 0) runtime_.main.cancelTimer(tickTimer_);
}

QString FocusPresenter::heading() const {
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

QString FocusPresenter::explanation() const {
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

QString FocusPresenter::primaryText() const {
  switch (state_->pomodoroPhase()->kind) {
    case Kind::focus:
      return tr("Skip to break");
    case Kind::rest:
      return tr("Skip to idle");
    case Kind::idle:
      break;
  }
  return tr("Start %1-minute focus").arg(*state_->pomodoroFocusMinutes());
}

QString FocusPresenter::primarySymbol() const {
  return running() ? QStringLiteral("forward.end.fill") : QStringLiteral("play.fill");
}

bool FocusPresenter::running() const { return state_->pomodoroPhase()->kind != Kind::idle; }

QString FocusPresenter::phaseWord() const {
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

QString FocusPresenter::timeText() const {
  if (!running()) return QStringLiteral("%1:00").arg(*state_->pomodoroFocusMinutes());
  return QString::fromStdString(formatRemaining(state_->pomodoroPhase()->endsAt, runtime_.clocks.now()));
}

double FocusPresenter::progress() const {
  if (!running()) return 0.0;
  const bool isFocus = state_->pomodoroPhase()->kind == Kind::focus;
  const double total = (isFocus ? *state_->pomodoroFocusMinutes() : *state_->pomodoroBreakMinutes()) * 60.0;
  return total > 0.0 ? std::clamp((total - remainingSeconds()) / total, 0.0, 1.0) : 1.0;
}

QString FocusPresenter::focusLengthText() const { return tr("%1 min").arg(*state_->pomodoroFocusMinutes()); }

double FocusPresenter::focusLength() const { return *state_->pomodoroFocusMinutes() / double{longestFocus}; }

QString FocusPresenter::breakLengthText() const { return tr("%1 min").arg(*state_->pomodoroBreakMinutes()); }

double FocusPresenter::breakLength() const { return *state_->pomodoroBreakMinutes() / double{longestBreak}; }

QString FocusPresenter::focusAppName() const {
  const auto& chosen = *state_->pomodoroFocusBundleID();
  if (!chosen) return tr("None");
  const auto app = std::ranges::find(*state_->apps(), *chosen, &AudioApp::bundleID);
  return QString::fromStdString(app == state_->apps()->end() ? *chosen : app->name);
}

void FocusPresenter::setVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  if (visible) Q_EMIT timeChanged();
  scheduleTick();
}

void FocusPresenter::primaryAction() {
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

void FocusPresenter::cancel() { state_->cancelPomodoro(false); }

void FocusPresenter::setFocusLength(double position) {
  state_->setPomodoroFocusMinutes(minutesAt(position, shortestFocus, longestFocus));
}

void FocusPresenter::setBreakLength(double position) {
  state_->setPomodoroBreakMinutes(minutesAt(position, shortestBreak, longestBreak));
}

void FocusPresenter::tellAll() {
  Q_EMIT phaseChanged();
  Q_EMIT timeChanged();
}

void FocusPresenter::refreshApps() {
  std::map<std::string, std::string> nameOf;
  for (const auto& app : *state_->apps()) nameOf.emplace(app.bundleID, app.name);
  for (const auto& candidate : *state_->focusCandidateBundleIDs()) nameOf.emplace(candidate, candidate);
  std::vector<std::pair<std::string, std::string>> choices(nameOf.begin(), nameOf.end());
  std::ranges::stable_sort(
      choices, [](const auto& left, const auto& right) { return compareNames(left.second, right.second) < 0; });

  const auto& chosen = *state_->pomodoroFocusBundleID();
  std::vector<MenuEntry> entries;
  entries.push_back({tr("None"), !chosen, false, [this] { state_->setPomodoroFocusBundleID(std::nullopt); }});
  entries.push_back(MenuEntry::divider());
  for (const auto& choice : choices) {
    entries.push_back({QString::fromStdString(choice.second), chosen == choice.first, false,
                       [this, bundleID = choice.first] { state_->setPomodoroFocusBundleID(bundleID); }});
  }
  appMenu_.setEntries(std::move(entries));
  Q_EMIT appsChanged();
}

void FocusPresenter::scheduleTick() {
  if (tickTimer_ != 0) runtime_.main.cancelTimer(std::exchange(tickTimer_, 0));
  if (!visible_ || !running()) return;
  tickTimer_ = runtime_.main.postAfter(std::chrono::seconds(1), [this] {
    tickTimer_ = 0;
    Q_EMIT timeChanged();
    scheduleTick();
  });
}

double FocusPresenter::remainingSeconds() const {
  return std::max(0.0, runtime_.clocks.now().secondsUntil(state_->pomodoroPhase()->endsAt));
}

}  // namespace quillmere
