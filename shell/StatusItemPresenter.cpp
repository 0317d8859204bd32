// Entries by identity.
#include "shell/StatusItemPresenter.h"

#include <utility>

#include "shell/StatusBarController.h"

namespace quillmere {

StatusItemPresenter::StatusItemPresenter(StatusItem& item, StatusBarController& controller)
    : item_(item), controller_(controller) {
  item_.setToolTip(controller_.toolTip());
  toolTipSubscriptions_ = controller_.observeToolTip([this] { item_.setToolTip(controller_.toolTip()); });
  item_.onActivated([this](const StatusItemActivation& activation) { controller_.handleClick(activation); });
  item_.onScroll([this](int angleDelta) { controller_.handleScroll(angleDelta); });
  item_.onMenuAboutToShow([this] { refresh(); });
  item_.onMenuItemChosen([this](int id, const std::string& activationToken) {
    // An entry that has gone since the menu was shown does nothing.
    if (const auto entry = entries_.find(id); entry != entries_.end()) {
      controller_.perform(StatusMenuEntry(entry->second), activationToken);
    }
  });
  refresh();
}

void StatusItemPresenter::show() { item_.show(); }

void StatusItemPresenter::refresh() {
  entries_.clear();
  separators_ = 0;
  item_.setMenu(itemsOf(controller_.rebuildMenu()));
}

std::vector<StatusMenuItem> StatusItemPresenter::itemsOf(const std::vector<StatusMenuEntry>& entries) {
  std::vector<StatusMenuItem> items;
  for (const auto& entry : entries) {
    StatusMenuItem item;
    if (entry.action == StatusAction::separator) {
      item.kind = StatusMenuItem::Kind::separator;
      item.id = idOf({entry.action, separators_++, {}});
      items.push_back(std::move(item));
      continue;
    }
    if (entry.hasSubmenu) {
      item.kind = StatusMenuItem::Kind::submenu;
      item.children = itemsOf(entry.submenu);
      item.isEnabled = !item.children.empty();
    }
    item.id = idOf({entry.action, entry.tag, entry.representedObject});
    if (!entry.hasSubmenu) entries_[item.id] = entry;
    item.title = entry.title;
    item.key = entry.key;
    if (entry.action == StatusAction::applyProfile) item.isChecked = entry.isOn;
    if (entry.action == StatusAction::toggleWhisper) item.icon = StatusMenuIcon::whisper;
    items.push_back(std::move(item));
  }
  return items;
}

int StatusItemPresenter::idOf(const Key& key) {
  const auto next = static_cast<int>(ids_.size()) + 1;
  return ids_.try_emplace(key, next).first->second;
}

}  // namespace quillmere
