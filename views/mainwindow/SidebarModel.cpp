// The sidebar's entries.
#include "views/mainwindow/SidebarModel.h"

#include <algorithm>
#include <utility>

namespace quillmere {

SidebarModel::SidebarModel(std::vector<Section> sections, QObject* parent)
    : QAbstractListModel(parent), sections_(std::move(sections)) {}

int SidebarModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(sections_.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto section = sections_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case SectionRole:
      return rawValue(section);
    case TitleRole:
      return titleOf(section);
    case SymbolRole:
      return symbolOf(section);
    case SelectedRole:
      return section == selected_;
    case BadgeRole:
      return section == Section::mixer && liveCount_ > 0 ? QString::number(liveCount_) : QString();
    default:
      return {};
  }
}

QHash<int, QByteArray> SidebarModel::roleNames() const {
  return {{SectionRole, "section"},
          {TitleRole, "title"},
          {SymbolRole, "symbol"},
          {SelectedRole, "isSelected"},
          {BadgeRole, "badge"}};
}

void SidebarModel::setSelected(Section section) {
  const auto before = std::exchange(selected_, section);
  if (before == section) return;
  tell(before, SelectedRole);
  tell(section, SelectedRole);
}

void SidebarModel::setLiveCount(int count) {
  if (std::exchange(liveCount_, count) != count) tell(Section::mixer, BadgeRole);
}

void SidebarModel::tell(Section section, Role role) {
  const auto found = std::ranges::find(sections_, section);
  if (found == sections_.end()) return;
  const auto at = index(static_cast<int>(found - sections_.begin()));
  Q_EMIT dataChanged(at, at, {role});
}

}  // namespace quillmere
