// Follows the state's applications.
#include "views/mixer/AppRowModel.h"

#include <utility>

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

AppRowModel::AppRowModel(std::shared_ptr<MixerState> state, ViewSettings& settings, Filter filter, QObject* parent)
    : KeyedListModel(parent), state_(std::move(state)), settings_(settings), filter_(filter) {
  const auto follow = [this](const auto& field, void (AppRowModel::*refresh)()) {
    subscriptions_.push_back(field.observe([this, refresh](const auto&) { (this->*refresh)(); }));
  };
  follow(state_->apps(), &AppRowModel::refreshApps);
  follow(state_->liveBundleIDs(), &AppRowModel::refreshApps);
  follow(state_->duckedBundleIDs(), &AppRowModel::refreshApps);
  follow(state_->browserTabs(), &AppRowModel::refreshTabs);
  follow(settings_.scrollOverRowAdjustsVolume(), &AppRowModel::refreshScroll);
  subscriptions_.push_back(state_->outputDevices().observe([this](const auto&) {
    for (auto* each : rows_) each->updateDevices();
  }));
  refreshApps();
}

AppRowModel::~AppRowModel() = default;

QVariant AppRowModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != RowRole) return {};
  return QVariant::fromValue(row(index.row()));
}

QHash<int, QByteArray> AppRowModel::roleNames() const { return {{RowRole, "row"}}; }

void AppRowModel::refreshApps() {
  const auto& live = *state_->liveBundleIDs();
  const auto& ducked = *state_->duckedBundleIDs();
  std::vector<std::string> wanted;
  wanted.reserve(state_->apps()->size());
  for (const auto& app : *state_->apps()) {
    if (filter_ == Filter::live && !live.contains(app.bundleID)) continue;
    // Of several entries with one identifier the first counts, as in the state's own operations.
    if (apps_.emplace(app.bundleID, &app).second) wanted.push_back(app.bundleID);
  }
  arrange(wanted);
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    const auto& app = *apps_.at(keys()[at]);
    rows_[at]->update(app, live.contains(app.bundleID), ducked.contains(app.bundleID));
  }
  apps_.clear();
}

void AppRowModel::refreshTabs() {
  for (auto* each : rows_) showTabs(*each);
}

void AppRowModel::refreshScroll() {
  for (auto* each : rows_) each->setScrollAdjusts(*settings_.scrollOverRowAdjustsVolume());
}

void AppRowModel::showTabs(AppRowPresenter& row) const {
  const auto open = state_->browserTabs()->find(row.identifier());
  row.tabs()->setTabs(open == state_->browserTabs()->end() ? std::vector<BrowserTab>{} : open->second);
}

void AppRowModel::insertedAt(int at, const std::string& key) {
  const auto& app = *apps_.at(key);
  const int tabLimit = filter_ == Filter::live ? TabListModel::compactLimit : TabListModel::noLimit;
  auto* made = new AppRowPresenter(
      *state_, app, tabLimit, [this, key](const BrowserTab& tab) { state_->activateTab(key, tab); }, this);
  made->update(app, state_->liveBundleIDs()->contains(key), state_->duckedBundleIDs()->contains(key));
  made->setScrollAdjusts(*settings_.scrollOverRowAdjustsVolume());
  showTabs(*made);
  rows_.insert(rows_.begin() + at, made);
}

void AppRowModel::removedAt(int at) {
  // The view still shows the row while it fades.
  rows_[static_cast<std::size_t>(at)]->leave();
  rows_.erase(rows_.begin() + at);
}

void AppRowModel::moved(int from, int to) {
  auto* row = rows_[static_cast<std::size_t>(from)];
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, row);
}

}  // namespace quillmere
