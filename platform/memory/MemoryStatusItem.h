// A status item without a panel: remembers what it was given, and does to the program what a test's hand does to it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/StatusItem.h"

namespace quillmere {

/// [main] throughout.
class MemoryStatusItem final : public StatusItem {
 public:
  void onAvailabilityChanged(std::function<void(bool)> callback) override { availability_ = std::move(callback); }
  [[nodiscard]] bool isAvailable() const override { return isAvailable_.value_or(false); }
  void show() override { isShown_ = true; }
  void setMenu(std::vector<StatusMenuItem> menu) override {
    if (menu == menu_) return;
    menu_ = std::move(menu);
    ++menuChanges_;
  }
  void setToolTip(std::string text) override { toolTip_ = std::move(text); }
  void onActivated(std::function<void(const StatusItemActivation&)> callback) override {
    activated_ = std::move(callback);
  }
  void onMenuItemChosen(std::function<void(int, const std::string&)> callback) override {
    chosen_ = std::move(callback);
  }
  void onMenuAboutToShow(std::function<void()> callback) override { aboutToShow_ = std::move(callback); }
  void onScroll(std::function<void(int)> callback) override { scroll_ = std::move(callback); }

  [[nodiscard]] bool isShown() const { return isShown_; }
  [[nodiscard]] const std::vector<StatusMenuItem>& menu() const { return menu_; }
  /// How often the menu was set to something else.
  [[nodiscard]] int menuChanges() const { return menuChanges_; }
  [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
  /// The first entry with this title, in submenus too; null if there is none.
  [[nodiscard]] const StatusMenuItem* find(const std::string& title) const { return find(menu_, title); }

  /// A panel comes or goes, or the first look for one finds none. Told the first time and then when it differs.
  void setAvailable(bool isAvailable) {
    if (isAvailable_ == isAvailable) return;
    isAvailable_ = isAvailable;
    if (availability_) availability_(isAvailable);
  }
  void activate(const StatusItemActivation& activation = {}) {
    if (activated_) activated_(activation);
  }
  /// A click on an entry of the menu, or of one that was there before.
  void choose(int id, const std::string& activationToken = {}) {
    if (chosen_) chosen_(id, activationToken);
  }
  /// Opens the menu as a host does that says so, and clicks on the entry; false if there is none that can be chosen.
  bool choose(const std::string& title) {
    openMenu();
    const auto* item = find(title);
    if (item == nullptr || !item->isEnabled || item->kind != StatusMenuItem::Kind::action) return false;
    choose(item->id);
    return true;
  }
  void openMenu() {
    if (aboutToShow_) aboutToShow_();
  }
  void scroll(int angleDelta) {
    if (scroll_) scroll_(angleDelta);
  }

 private:
  static const StatusMenuItem* find(const std::vector<StatusMenuItem>& items, const std::string& title) {
    for (const auto& item : items) {
      if (item.kind != StatusMenuItem::Kind::separator && item.title == title) return &item;
      if (const auto* child = find(item.children, title)) return child;
    }
    return nullptr;
  }

  std::optional<bool> isAvailable_;
  bool isShown_ = false;
  std::vector<StatusMenuItem> menu_;
  int menuChanges_ = 0;
  std::string toolTip_;
  std::function<void(bool)> availability_;
  std::function<void(const StatusItemActivation&)> activated_;
  std::function<void(int, const std::string&)> chosen_;
  std::function<void()> aboutToShow_;
  std::function<void(int)> scroll_;
};

}  // namespace quillmere
