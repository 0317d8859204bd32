// What the picker lists.
#include "views/picker/AppPickerModel.h"

#include <algorithm>
#include <utility>

#include "views/shared/AppIconProvider.h"

namespace quillmere {

int AppPickerModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant AppPickerModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& app = at(index.row());
  switch (role) {
    case HeadingRole:
      return headingOf(index.row());
    case NameRole:
      return QString::fromStdString(app.name);
    case BundleIDRole:
      return QString::fromStdString(app.bundleID);
    case IconSourceRole:
      return AppIconProvider::urlFor(app.bundleID);
    case AddedRole:
      return isAdded(index.row());
    default:
      return {};
  }
}

QHash<int, QByteArray> AppPickerModel::roleNames() const {
  return {{HeadingRole, "heading"},
          {NameRole, "name"},
          {BundleIDRole, "bundleID"},
          {IconSourceRole, "iconSource"},
          {AddedRole, "added"}};
}

QString AppPickerModel::headingOf(int row) const {
  const auto at = static_cast<std::size_t>(row);
  const bool isRunning = rows_[at].isRunning;
  if (at > 0 && rows_[at - 1].isRunning == isRunning) return {};
  return isRunning ? tr("Running") : tr("Installed");
}

void AppPickerModel::setExisting(std::set<std::string> existing) {
  existing_ = std::move(existing);
  if (count() > 0) Q_EMIT dataChanged(index(0), index(count() - 1), {AddedRole});
}

void AppPickerModel::setRunning(const std::vector<InstalledApp>& running) {
  running_ = entriesOf(running);
  rearrange();
}

void AppPickerModel::setInstalled(const std::vector<InstalledApp>& installed) {
  installed_ = entriesOf(installed);
  rearrange();
}

void AppPickerModel::setQuery(const QString& query) {
  query_ = query.toLower();
  rearrange();
}

bool AppPickerModel::isAdded(int row) const { return existing_.contains(at(row).bundleID); }

bool AppPickerModel::Row::looksLike(const Row& other) const {
  return isRunning == other.isRunning && entry->app.bundleID == other.entry->app.bundleID &&
         entry->app.name == other.entry->app.name;
}

AppPickerModel::Entries AppPickerModel::entriesOf(const std::vector<InstalledApp>& apps) {
  Entries entries;
  entries.reserve(apps.size());
  for (const auto& app : apps) {
    entries.push_back(std::make_shared<const Entry>(
        Entry{app, QString::fromStdString(app.name).toLower(), QString::fromStdString(app.bundleID).toLower()}));
  }
  return entries;
}

bool AppPickerModel::matches(const Entry& entry) const {
  return entry.name.contains(query_) || entry.bundleID.contains(query_);
}

void AppPickerModel::rearrange() {
  std::vector<Row> rows;
  std::set<std::string> runningIDs;
  for (const auto& entry : running_) {
    runningIDs.insert(entry->app.bundleID);
    if (matches(*entry)) rows.push_back({entry, true});
  }
  for (const auto& entry : installed_) {
    if (matches(*entry) && !runningIDs.contains(entry->app.bundleID)) rows.push_back({entry, false});
  }

  const auto shorter = std::min(rows_.size(), rows.size());
  std::size_t head = 0;
  while (head < shorter && rows_[head].looksLike(rows[head])) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && rows_[rows_.size() - 1 - tail].looksLike(rows[rows.size() - 1 - tail])) ++tail;

  const auto first = static_cast<std::ptrdiff_t>(head);
  const auto gone = static_cast<std::ptrdiff_t>(rows_.size() - head - tail);
  const auto fresh = static_cast<std::ptrdiff_t>(rows.size() - head - tail);
  if (gone > 0) {
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + gone) - 1);
    rows_.erase(rows_.begin() + first, rows_.begin() + first + gone);
    endRemoveRows();
  }
  if (fresh > 0) {
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + fresh) - 1);
    rows_.insert(rows_.begin() + first, rows.begin() + first, rows.begin() + first + fresh);
    endInsertRows();
  }
  // A row that stays may be the first of its section now, or no longer.
  if (!rows_.empty() && gone + fresh > 0) Q_EMIT dataChanged(index(0), index(count() - 1), {HeadingRole});
  if (gone != fresh) Q_EMIT countChanged();
}

}  // namespace quillmere
