// The entries of a menu as data.
#include "views/shared/MenuModel.h"

#include <algorithm>
#include <utility>

namespace quillmere {

int MenuModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant MenuModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& entry = entries_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case TitleRole:
      return entry.title;
    case CheckedRole:
      return entry.checked;
    case DividerRole:
      return entry.isDivider;
    default:
      return {};
  }
}

QHash<int, QByteArray> MenuModel::roleNames() const {
  return {{TitleRole, "title"}, {CheckedRole, "checked"}, {DividerRole, "divider"}};
}

void MenuModel::setEntries(std::vector<MenuEntry> entries) {
  // What is the same at both ends stays; what lies between goes and comes as one block.
  const auto isSame = [](const MenuEntry& left, const MenuEntry& right) {
    return left.isDivider == right.isDivider && left.title == right.title;
  };
  const auto shorter = std::min(entries_.size(), entries.size());
  std::size_t head = 0;
  while (head < shorter && isSame(entries_[head], entries[head])) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && isSame(*(entries_.rbegin() + static_cast<std::ptrdiff_t>(tail)),
                                         *(entries.rbegin() + static_cast<std::ptrdiff_t>(tail)))) {
    ++tail;
  }
  const auto first = static_cast<int>(head);
  if (const auto gone = static_cast<int>(entries_.size() - head - tail); gone > 0) {
    beginRemoveRows({}, first, first + gone - 1);
    entries_.erase(entries_.begin() + first, entries_.begin() + first + gone);
    endRemoveRows();
  }
  if (const auto fresh = static_cast<int>(entries.size() - head - tail); fresh > 0) {
    beginInsertRows({}, first, first + fresh - 1);
    entries_.insert(entries_.begin() + first, entries.begin() + first, entries.begin() + first + fresh);
    endInsertRows();
  }
  const auto before = std::exchange(entries_, std::move(entries));
  for (int row = 0; row < rowCount(); ++row) {
    const auto at = static_cast<std::size_t>(row);
    if (entries_[at].checked != before[at].checked) Q_EMIT dataChanged(index(row), index(row), {CheckedRole});
  }
  const bool anyChecked = std::ranges::any_of(entries_, &MenuEntry::checked);
  if (std::exchange(anyChecked_, anyChecked) != anyChecked) Q_EMIT anyCheckedChanged();
}

void MenuModel::trigger(int row) {
  if (row < 0 || row >= rowCount()) return;
  const auto& entry = entries_[static_cast<std::size_t>(row)];
  if (entry.isDivider) return;
  // The action may replace the entries, and this function with them.
  const auto action = entry.action;
  if (action) action();
}

}  // namespace quillmere
