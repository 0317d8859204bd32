// Follows the state's applications.
#include "views/mixer/AppRowModel.h"

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "state/MixerState.h"
#include "state/ViewSettings.h"
#include "views/ViewIntents.h"

namespace quillmere {

namespace {
constexpr auto longerThanAnyFade = std::chrono::seconds(2);
}

AppRowModel::AppRowModel(std::shared_ptr<MixerState> state, ViewSettings& settings, Filter filter,
                         ActivateTab activateTab, QObject* parent)
    : KeyedListModel(parent),
      state_(std::move(state)),
      settings_(settings),
      filter_(filter),
      activateTab_(std::move(activateTab)) {
  const auto follow = [this](const auto& field) {
    subscriptions_.push_back(field.observe([this](const auto&) { refresh(); }));
  };
  follow(state_->apps());
  follow(state_->liveBundleIDs());
  follow(state_->duckedBundleIDs());
  follow(state_->outputDevices());
  follow(state_->browserTabs());
  follow(settings_.scrollOverRowAdjustsVolume());
  refresh();
}

AppRowModel::~AppRowModel() = default;

QVariant AppRowModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != RowRole) return {};
  return QVariant::fromValue(row(index.row()));
}

QHash<int, QByteArray> AppRowModel::roleNames() const { return {{RowRole, "row"}}; }

void AppRowModel::refresh() {
  const auto& live = *state_->liveBundleIDs();
  const auto& ducked = *state_->duckedBundleIDs();
  const auto& tabs = *state_->browserTabs();
  std::vector<std::string> wanted;
  for (const auto& app : *state_->apps()) {
    if (filter_ == Filter::all || live.contains(app.bundleID)) wanted.push_back(app.bundleID);
  }
  arrange(wanted);
  for (int at = 0; at < count(); ++at) {
    // Of several entries with one identifier the first counts, as in the state's own operations.
    const auto& app = *std::ranges::find(*state_->apps(), keys()[static_cast<std::size_t>(at)], &AudioApp::bundleID);
    row(at)->update(app, live.contains(app.bundleID), ducked.contains(app.bundleID));
    row(at)->setScrollAdjusts(*settings_.scrollOverRowAdjustsVolume());
    const auto open = tabs.find(app.bundleID);
    row(at)->tabs()->setTabs(open == tabs.end() ? std::vector<BrowserTab>{} : open->second);
  }
}

void AppRowModel::insertedAt(int at, const std::string& key) {
  for (const auto& app : *state_->apps()) {
    if (app.bundleID != key) continue;
    const int tabLimit = filter_ == Filter::live ? TabListModel::compactLimit : TabListModel::noLimit;
    auto* made = new AppRowPresenter(
        *state_, app, tabLimit, [this, key](const BrowserTab& tab) { ask(activateTab_, key, tab); }, this);
    made->update(app, state_->liveBundleIDs()->contains(key), state_->duckedBundleIDs()->contains(key));
    rows_.insert(rows_.begin() + at, made);
    return;
  }
}

void AppRowModel::removedAt(int at) {
  // The view still shows the row while it fades.
  auto* leaving = rows_[static_cast<std::size_t>(at)];
  QTimer::singleShot(longerThanAnyFade, leaving, &QObject::deleteLater);
  rows_.erase(rows_.begin() + at);
}

void AppRowModel::moved(int from, int to) {
  auto* row = rows_[static_cast<std::size_t>(from)];
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, row);
}

}  // namespace quillmere
