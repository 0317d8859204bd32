// The saved profiles as tiles.
#include "views/profiles/ProfileListModel.h"

#include <unordered_map>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/AppCount.h"

namespace quillmere {

ProfileListModel::ProfileListModel(std::shared_ptr<MixerState> state, QObject* parent)
    : KeyedListModel(parent), state_(std::move(state)) {
  subscriptions_.push_back(state_->profiles().observe([this](const auto&) { refresh(); }));
  subscriptions_.push_back(state_->activeProfileID().observe([this](const auto&) { refresh(); }));
  refresh();
}

QVariant ProfileListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return QString::fromStdString(row.name);
    case SizeTextRole:
      return countedApps(row.appCount);
    case ActiveRole:
      return row.isActive;
    case SelectedRole:
      return row.isSelected;
    default:
      return {};
  }
}

QHash<int, QByteArray> ProfileListModel::roleNames() const {
  return {{NameRole, "name"}, {SizeTextRole, "sizeText"}, {ActiveRole, "active"}, {SelectedRole, "selected"}};
}

void ProfileListModel::setSelected(std::optional<Uuid> id) {
  selected_ = id;
  refresh();
}

void ProfileListModel::apply(int row) {
  if (const auto id = idAt(row)) state_->applyProfile(*id);
}

void ProfileListModel::duplicate(int row) {
  if (const auto id = idAt(row)) state_->duplicateProfile(*id);
}

void ProfileListModel::remove(int row) {
  if (const auto id = idAt(row)) state_->deleteProfile(*id);
}

void ProfileListModel::refresh() {
  const auto& profiles = *state_->profiles();
  std::vector<std::string> wanted;
  wanted.reserve(profiles.size());
  // Of several with one identity the first is shown, which is the one that operations find.
  std::unordered_map<std::string, const Profile*> profileOf;
  for (const auto& profile : profiles) {
    wanted.push_back(profile.id.text());
    profileOf.emplace(wanted.back(), &profile);
  }
  arrange(wanted);
  for (int at = 0; at < count(); ++at) {
    const auto* profile = profileOf.at(keys()[static_cast<std::size_t>(at)]);
    Row now{profile->name, profile->apps.size(), *state_->activeProfileID() == profile->id, selected_ == profile->id};
    auto& shown = rows_[static_cast<std::size_t>(at)];
    if (shown == now) continue;
    shown = std::move(now);
    Q_EMIT dataChanged(index(at), index(at));
  }
}

std::optional<Uuid> ProfileListModel::idAt(int row) const {
  if (row < 0 || row >= count()) return std::nullopt;
  return Uuid::parse(keys()[static_cast<std::size_t>(row)]);
}

void ProfileListModel::insertedAt(int row, const std::string&) { rows_.insert(rows_.begin() + row, Row{}); }

void ProfileListModel::removedAt(int row) { rows_.erase(rows_.begin() + row); }

void ProfileListModel::moved(int from, int to) {
  auto row = std::move(rows_[static_cast<std::size_t>(from)]);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, std::move(row));
}

}  // namespace quillmere
