// The applications as rows that are only looked at.
#include "views/activity/ActivityRowModel.h"

#include <string_view>
#include <unordered_map>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

ActivityRowModel::ActivityRowModel(std::shared_ptr<MixerState> state, QObject* parent)
    : KeyedListModel(parent), state_(std::move(state)) {
  const auto follow = [this](const auto&) { refresh(); };
  subscriptions_.push_back(state_->apps().observe(follow));
  subscriptions_.push_back(state_->liveBundleIDs().observe(follow));
  refresh();
}

QVariant ActivityRowModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto at = static_cast<std::size_t>(index.row());
  switch (role) {
    case NameRole:
      return QString::fromStdString(rows_[at].name);
    case IconRole:
      return AppIconProvider::urlFor(keys()[at]);
    case LiveRole:
      return rows_[at].isLive;
    default:
      return {};
  }
}

QHash<int, QByteArray> ActivityRowModel::roleNames() const {
  return {{NameRole, "name"}, {IconRole, "iconSource"}, {LiveRole, "live"}};
}

void ActivityRowModel::insertedAt(int row, const std::string&) { rows_.insert(rows_.begin() + row, Row{}); }

void ActivityRowModel::removedAt(int row) { rows_.erase(rows_.begin() + row); }

void ActivityRowModel::moved(int from, int to) {
  auto row = std::move(rows_[static_cast<std::size_t>(from)]);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, std::move(row));
}

void ActivityRowModel::refresh() {
  const auto& live = *state_->liveBundleIDs();
  std::vector<std::string> wanted;
  std::unordered_map<std::string_view, const AudioApp*> apps;
  wanted.reserve(state_->apps()->size());
  for (const auto& app : *state_->apps()) {
    if (apps.emplace(app.bundleID, &app).second) wanted.push_back(app.bundleID);
  }
  arrange(wanted);
  for (std::size_t at = 0; at < rows_.size(); ++at) {
    const auto& app = *apps.at(keys()[at]);
    Row now{app.name, live.contains(app.bundleID)};
    if (rows_[at] == now) continue;
    rows_[at] = std::move(now);
    const auto changed = index(static_cast<int>(at));
    Q_EMIT dataChanged(changed, changed);
  }
}

}  // namespace quillmere
