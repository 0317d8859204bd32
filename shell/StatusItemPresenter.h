// Keeps a status item's menu true to the state, and hands its clicks to the controller.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/StatusItem.h"
#include "runtime/Observable.h"
#include "shell/StatusMenu.h"

namespace quillmere {

class StatusBarController;

/// [main] throughout.
class StatusItemPresenter {
 public:
  /// Both outlive it, and the item's callbacks are not used by anybody else from now on.
  StatusItemPresenter(StatusItem& item, StatusBarController& controller);

  /// Puts the icon into the panel.
  void show();
  /// Builds the menu anew. Some hosts show the menu before they ask for it, so it is kept up to date.
  void refresh();

 private:
  /// What tells one entry from another: its action, and what it acts on; separators by their order.
  using Key = std::tuple<StatusAction, int, std::string>;

  std::vector<StatusMenuItem> itemsOf(const std::vector<StatusMenuEntry>& entries);
  int idOf(const Key& key);

  StatusItem& item_;
  StatusBarController& controller_;
  std::map<Key, int> ids_;
  /// The entries as last built, by id.
  std::map<int, StatusMenuEntry> entries_;
  int separators_ = 0;
  std::vector<Subscription> toolTipSubscriptions_;
};

}  // namespace quillmere
