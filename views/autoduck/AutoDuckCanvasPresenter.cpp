// Auto-Duck's page.
#include "views/autoduck/AutoDuckCanvasPresenter.h"

#include <cstdint>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/PercentText.h"

namespace quillmere {

namespace {

constexpr std::int64_t shortestFadeMillis = 50;
constexpr double fadeRangeMillis = 950.0;
constexpr double longestDelayMillis = 5000.0;

}  // namespace

AutoDuckCanvasPresenter::AutoDuckCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      triggers_(services, &DuckRule::triggerBundleIDs, DuckRule::defaultMeetingApps()),
      ducked_(services, &DuckRule::duckedBundleIDs, DuckRule::defaultMusicApps()),
      picker_(services),
      subscription_(state_->duckRule().observe([this](const auto&) { Q_EMIT ruleChanged(); })) {}

QString AutoDuckCanvasPresenter::targetText() const { return percentText(state_->duckRule()->targetGain); }

double AutoDuckCanvasPresenter::target() const { return static_cast<double>(state_->duckRule()->targetGain); }

QString AutoDuckCanvasPresenter::fadeText() const { return tr("%1 ms").arg(state_->duckRule()->fadeMillis); }

double AutoDuckCanvasPresenter::fade() const {
  return (static_cast<double>(state_->duckRule()->fadeMillis) - double{shortestFadeMillis}) / fadeRangeMillis;
}

QString AutoDuckCanvasPresenter::delayText() const { return tr("%1 ms").arg(state_->duckRule()->restoreDelayMillis); }

double AutoDuckCanvasPresenter::delay() const {
  return static_cast<double>(state_->duckRule()->restoreDelayMillis) / longestDelayMillis;
}

template <typename Change>
void AutoDuckCanvasPresenter::change(Change change) {
  auto rule = *state_->duckRule();
  change(rule);
  state_->setDuckRule(std::move(rule));
}

void AutoDuckCanvasPresenter::setTarget(double position) {
  change([position](DuckRule& rule) { rule.targetGain = static_cast<float>(position); });
}

void AutoDuckCanvasPresenter::setFade(double position) {
  change([position](DuckRule& rule) {
    rule.fadeMillis = static_cast<std::int64_t>(position * fadeRangeMillis) + shortestFadeMillis;
  });
}

void AutoDuckCanvasPresenter::setDelay(double position) {
  change([position](DuckRule& rule) {
    rule.restoreDelayMillis = static_cast<std::int64_t>(position * longestDelayMillis);
  });
}

void AutoDuckCanvasPresenter::addTrigger() { pickFor(triggers_); }

void AutoDuckCanvasPresenter::addDucked() { pickFor(ducked_); }

void AutoDuckCanvasPresenter::pickFor(DuckListModel& list) {
  picker_.show(list.members(), [&list](const InstalledApp& app) { list.add(app.bundleID); });
}

}  // namespace quillmere
