// Who may keep playing during focus.
#include "views/focus/FocusCellModel.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/TextOrder.h"
#include "state/MixerState.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

FocusCellModel::FocusCellModel(const ViewServices& services, QObject* parent)
    : KeyedListModel(parent), state_(services.state), names_(services, [this] { refresh(); }) {
  subscriptions_.push_back(state_->focusCandidateBundleIDs().observe([this](const auto&) { refresh(); }));
  subscriptions_.push_back(state_->pomodoroFocusBundleID().observe([this](const auto&) { refresh(); }));
  refresh();
}

QVariant FocusCellModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto at = static_cast<std::size_t>(index.row());
  const auto& row = rows_[at];
  switch (role) {
    case NameRole:
      return QString::fromStdString(row.name);
    case IconSourceRole:
      return keys()[at].empty() ? QUrl() : AppIconProvider::urlFor(keys()[at]);
    case SelectedRole:
      return row.isSelected;
    case CanRemoveRole:
      return row.canRemove;
    case TipRole:
      return row.isSelected ? tr("Selected — click to clear")
                            : tr("Keep %1 playing during focus").arg(QString::fromStdString(row.name));
    case IsNobodyRole:
      return keys()[at].empty();
    default:
      return {};
  }
}

QHash<int, QByteArray> FocusCellModel::roleNames() const {
  return {{NameRole, "name"}, {IconSourceRole, "iconSource"}, {SelectedRole, "selected"}, {CanRemoveRole, "canRemove"},
          {TipRole, "tip"},   {IsNobodyRole, "isNobody"}};
}

std::set<std::string> FocusCellModel::candidates() const {
  std::set<std::string> all(keys().begin(), keys().end());
  all.erase("");
  return all;
}

void FocusCellModel::add(const std::string& bundleID) {
  auto candidates = *state_->focusCandidateBundleIDs();
  candidates.insert(bundleID);
  state_->setFocusCandidateBundleIDs(std::move(candidates));
  state_->setPomodoroFocusBundleID(bundleID);
}

void FocusCellModel::tap(int row) {
  if (!isCell(row)) return;
  const auto at = static_cast<std::size_t>(row);
  std::optional<std::string> chosen;
  if (!keys()[at].empty() && !rows_[at].isSelected) chosen = keys()[at];
  state_->setPomodoroFocusBundleID(std::move(chosen));
}

void FocusCellModel::remove(int row) {
  if (!isCell(row)) return;
  // What is asked of the state may take the row away.
  const std::string bundleID = keys()[static_cast<std::size_t>(row)];
  const bool wasSelected = rows_[static_cast<std::size_t>(row)].isSelected;
  if (bundleID.empty()) return;
  auto candidates = *state_->focusCandidateBundleIDs();
  candidates.erase(bundleID);
  state_->setFocusCandidateBundleIDs(std::move(candidates));
  if (wasSelected) state_->setPomodoroFocusBundleID(std::nullopt);
}

void FocusCellModel::refresh() {
  const auto& candidates = *state_->focusCandidateBundleIDs();
  const auto& chosen = *state_->pomodoroFocusBundleID();
  std::vector<std::pair<std::string, std::string>> named;
  std::set<std::string> seen;
  const auto take = [&](const std::string& bundleID) {
    // What has no identifier can't be chosen; its cell would be nobody's.
    if (!bundleID.empty() && seen.insert(bundleID).second) named.emplace_back(names_.name(bundleID), bundleID);
  };
  for (const auto& app : *state_->apps()) take(app.bundleID);
  for (const auto& bundleID : candidates) take(bundleID);
  std::ranges::stable_sort(
      named, [](const auto& left, const auto& right) { return compareNames(left.first, right.first) < 0; });

  std::vector<std::string> wanted{""};
  wanted.reserve(named.size() + 1);
  for (const auto& each : named) wanted.push_back(each.second);
  arrange(wanted);
  for (int at = 0; at < count(); ++at) {
    const auto& bundleID = keys()[static_cast<std::size_t>(at)];
    Row now;
    if (bundleID.empty()) {
      now = {tr("None").toStdString(), !chosen, false};
    } else {
      now = {named[static_cast<std::size_t>(at) - 1].first, chosen == bundleID, candidates.contains(bundleID)};
    }
    auto& shown = rows_[static_cast<std::size_t>(at)];
    if (shown == now) continue;
    shown = std::move(now);
    Q_EMIT dataChanged(index(at), index(at));
  }
}

void FocusCellModel::insertedAt(int row, const std::string&) { rows_.insert(rows_.begin() + row, Row{}); }

void FocusCellModel::removedAt(int row) { rows_.erase(rows_.begin() + row); }

void FocusCellModel::moved(int from, int to) {
  auto row = std::move(rows_[static_cast<std::size_t>(from)]);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, std::move(row));
}

}  // namespace quillmere
