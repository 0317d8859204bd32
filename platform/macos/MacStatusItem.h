// The icon in the menu bar and its menu.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/StatusItem.h"

namespace quillmere {

/// [main] throughout.
class MacStatusItem final : public StatusItem {
 public:
  MacStatusItem();
  /// Takes the icon out of the menu bar.
  ~MacStatusItem() override;
  MacStatusItem(const MacStatusItem&) = delete;
  MacStatusItem& operator=(const MacStatusItem&) = delete;

  /// The icon as an NSStatusBarButton*, which a popover hangs from; null before show().
  [[nodiscard]] void* button() const;

  /// There is always a menu bar.
  void onAvailabilityChanged(std::function<void(bool isAvailable)> callback) override;
  [[nodiscard]] bool isAvailable() const override { return true; }
  void show() override;
  void setMenu(std::vector<StatusMenuItem> menu) override;
  void setToolTip(std::string text) override;
  /// A click tells neither its place nor a token: the popover hangs from the button, and nobody asks for a reason.
  void onActivated(std::function<void(const StatusItemActivation& activation)> callback) override;
  void onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) override;
  void onMenuAboutToShow(std::function<void()> callback) override;
  /// Never called: in the menu bar nothing is scrolled.
  void onScroll(std::function<void(int angleDelta)> /*callback*/) override {}

 private:
  struct Item;
  std::shared_ptr<Item> item_;
};

}  // namespace quillmere
