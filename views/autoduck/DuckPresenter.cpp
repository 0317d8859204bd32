// Auto-Duck's card.
#include "views/autoduck/DuckPresenter.h"

#include <QStringList>
#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "core/Percent.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {

constexpr double longestDelayMillis = 5000.0;

QString namesOf(const std::set<std::string>& bundleIDs, const std::vector<AudioApp>& apps) {
  QStringList names;
  for (const auto& bundleID : bundleIDs) {
    const auto app = std::ranges::find(apps, bundleID, &AudioApp::bundleID);
    if (app != apps.end()) names.append(QString::fromStdString(app->name));
  }
  const auto nameless = static_cast<qsizetype>(bundleIDs.size()) - names.size();
  // The count stands beside it anyhow.
  if (names.isEmpty()) return {};
  if (nameless > 0) names.append(DuckPresenter::tr("+ %1 more").arg(nameless));
  return names.join(QStringLiteral(", "));
}

QString countText(std::size_t count) {
  return count == 1 ? DuckPresenter::tr("1 app") : DuckPresenter::tr("%1 apps").arg(count);
}

}  // namespace

DuckPresenter::DuckPresenter(std::shared_ptr<MixerState> state, QObject* parent)
    : QObject(parent), state_(std::move(state)) {
  const auto tell = [this](const auto&) { Q_EMIT changed(); };
  subscriptions_.push_back(state_->isDucking().observe(tell));
  subscriptions_.push_back(state_->duckRule().observe(tell));
  subscriptions_.push_back(state_->apps().observe(tell));
}

bool DuckPresenter::ducking() const { return *state_->isDucking(); }

QString DuckPresenter::statusText() const { return ducking() ? tr("Ducking now") : tr("Standing by"); }

QString DuckPresenter::targetText() const {
  return QStringLiteral("%1%").arg(percentOf(state_->duckRule()->targetGain));
}

double DuckPresenter::target() const { return static_cast<double>(state_->duckRule()->targetGain); }

QString DuckPresenter::delayText() const { return tr("%1 ms").arg(state_->duckRule()->restoreDelayMillis); }

double DuckPresenter::delay() const {
  return static_cast<double>(state_->duckRule()->restoreDelayMillis) / longestDelayMillis;
}

QString DuckPresenter::triggerCountText() const { return countText(state_->duckRule()->triggerBundleIDs.size()); }

QString DuckPresenter::triggerNames() const { return namesOf(state_->duckRule()->triggerBundleIDs, *state_->apps()); }

QString DuckPresenter::duckedCountText() const { return countText(state_->duckRule()->duckedBundleIDs.size()); }

QString DuckPresenter::duckedNames() const { return namesOf(state_->duckRule()->duckedBundleIDs, *state_->apps()); }

void DuckPresenter::setTarget(double position) {
  auto rule = *state_->duckRule();
  rule.targetGain = static_cast<float>(position);
  state_->setDuckRule(std::move(rule));
}

void DuckPresenter::setDelay(double position) {
  auto rule = *state_->duckRule();
  rule.restoreDelayMillis = static_cast<std::int64_t>(position * longestDelayMillis);
  state_->setDuckRule(std::move(rule));
}

}  // namespace quillmere
