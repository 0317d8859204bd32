// What the page of the activity shows.
#include "views/activity/ActivityCanvasPresenter.h"

#include <algorithm>
#include <utility>

#include "core/DuckRule.h"
#include "state/MixerState.h"

namespace quillmere {

namespace {

constexpr double progressPerApp = 0.125;
constexpr double profilesForFull = 5.0;

double share(std::size_t part, std::size_t whole) {
  return whole == 0 ? 0.0 : static_cast<double>(part) / static_cast<double>(whole);
}

}  // namespace

ActivityCanvasPresenter::ActivityCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state), rows_(state_) {
  subscriptions_.push_back(state_->apps().observe([this](const auto&) { refreshMix(); }));
  subscriptions_.push_back(state_->liveBundleIDs().observe([this](const auto&) { refreshMix(); }));
  subscriptions_.push_back(state_->profiles().observe([this](const auto&) { Q_EMIT profilesChanged(); }));
  subscriptions_.push_back(state_->duckRule().observe([this](const auto&) { Q_EMIT triggersChanged(); }));
  refreshMix();
}

QString ActivityCanvasPresenter::liveValue() const { return QString::number(liveCount_); }

double ActivityCanvasPresenter::liveProgress() const { return share(liveCount_, appCount_); }

QString ActivityCanvasPresenter::appsValue() const { return QString::number(appCount_); }

double ActivityCanvasPresenter::appsProgress() const {
  return std::min(static_cast<double>(appCount_) * progressPerApp, 1.0);
}

bool ActivityCanvasPresenter::anyApps() const { return appCount_ > 0; }

QString ActivityCanvasPresenter::profilesValue() const { return QString::number(state_->profiles()->size()); }

double ActivityCanvasPresenter::profilesProgress() const {
  return std::min(static_cast<double>(state_->profiles()->size()) / profilesForFull, 1.0);
}

QString ActivityCanvasPresenter::triggersValue() const {
  return QString::number(state_->duckRule()->triggerBundleIDs.size());
}

double ActivityCanvasPresenter::triggersProgress() const {
  return share(state_->duckRule()->triggerBundleIDs.size(),
               std::max<std::size_t>(DuckRule::defaultMeetingApps().size(), 1));
}

void ActivityCanvasPresenter::refreshMix() {
  const auto live = state_->liveBundleIDs()->size();
  const auto apps = state_->apps()->size();
  const bool isSame = live == liveCount_ && apps == appCount_;
  liveCount_ = live;
  appCount_ = apps;
  if (!isSame) Q_EMIT mixChanged();
}

}  // namespace quillmere
