// The panel that hangs from the icon in the menu bar, around a view of whoever draws.
#pragma once

#include <functional>
#include <memory>

namespace quillmere {

/// [main] throughout. Closes by itself with a click anywhere else.
class MacPopover {
 public:
  MacPopover();
  ~MacPopover();
  MacPopover(const MacPopover&) = delete;
  MacPopover& operator=(const MacPopover&) = delete;

  /// The NSView* that whoever draws puts its own into, at its upper left corner.
  [[nodiscard]] void* content() const;
  /// In points; the popover follows, shown or not.
  void setContentSize(double width, double height);
  /// Below an NSView*, and gives it the keyboard.
  void show(void* anchor);
  void close();
  [[nodiscard]] bool isShown() const;
  /// Called when it begins to close, by itself or by close().
  void onClosing(std::function<void()> callback);
  /// Called after it has closed.
  void onClosed(std::function<void()> callback);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillmere
