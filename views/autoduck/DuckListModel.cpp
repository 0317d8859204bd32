// One of Auto-Duck's two lists of applications.
#include "views/autoduck/DuckListModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/AppCount.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

DuckListModel::DuckListModel(const ViewServices& services, List list, const std::set<std::string>& defaults,
                             QObject* parent)
    : KeyedListModel(parent),
      state_(services.state),
      names_(services, [this] { refresh(); }),
      list_(list),
      defaults_(defaults) {
  subscriptions_.push_back(state_->duckRule().observe([this](const auto&) { refresh(); }));
  refresh();
}

QVariant DuckListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto at = static_cast<std::size_t>(index.row());
  switch (role) {
    case NameRole:
      return QString::fromStdString(rows_[at].name);
    case BundleIDRole:
      return QString::fromStdString(keys()[at]);
    case IconSourceRole:
      return AppIconProvider::urlFor(keys()[at]);
    case OnRole:
      return rows_[at].isOn;
    case StartsDefaultsRole:
      return rows_[at].startsDefaults;
    default:
      return {};
  }
}

QHash<int, QByteArray> DuckListModel::roleNames() const {
  return {{NameRole, "name"},
          {BundleIDRole, "bundleID"},
          {IconSourceRole, "iconSource"},
          {OnRole, "on"},
          {StartsDefaultsRole, "startsDefaults"}};
}

QString DuckListModel::countText() const { return countedApps(members().size()); }

const std::set<std::string>& DuckListModel::members() const { return (*state_->duckRule()).*list_; }

void DuckListModel::add(const std::string& bundleID) { set(bundleID, true); }

void DuckListModel::setOn(int row, bool on) {
  if (row < 0 || row >= count()) return;
  set(std::string(keys()[static_cast<std::size_t>(row)]), on);
}

void DuckListModel::set(const std::string& bundleID, bool on) {
  auto rule = *state_->duckRule();
  if (on) {
    (rule.*list_).insert(bundleID);
  } else {
    (rule.*list_).erase(bundleID);
  }
  state_->setDuckRule(std::move(rule));
}

void DuckListModel::refresh() {
  const auto& on = members();
  std::vector<std::string> wanted(on.begin(), on.end());
  std::ranges::set_difference(defaults_, on, std::back_inserter(wanted));
  arrange(wanted);
  for (int at = 0; at < count(); ++at) {
    const auto& bundleID = keys()[static_cast<std::size_t>(at)];
    Row now{names_.name(bundleID), static_cast<std::size_t>(at) < on.size(), static_cast<std::size_t>(at) == on.size()};
    auto& shown = rows_[static_cast<std::size_t>(at)];
    if (shown == now) continue;
    shown = std::move(now);
    Q_EMIT dataChanged(index(at), index(at));
  }
  Q_EMIT countTextChanged();
}

void DuckListModel::insertedAt(int row, const std::string&) { rows_.insert(rows_.begin() + row, Row{}); }

void DuckListModel::removedAt(int row) { rows_.erase(rows_.begin() + row); }

void DuckListModel::moved(int from, int to) {
  auto row = std::move(rows_[static_cast<std::size_t>(from)]);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, std::move(row));
}

}  // namespace quillmere
