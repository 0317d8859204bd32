// The popover on a Mac: the system's own, around the window that the toolkit draws.
#pragma once

#include <QWindow>
#include <functional>
#include <memory>

#include "platform/macos/MacPopover.h"
#include "windows/PopoverStage.h"

namespace quillmere {

/// [main] throughout.
class PopoverInMenuBar final : public PopoverStage {
  Q_OBJECT

 public:
  /// @param anchor  the icon in the menu bar, as MacPopover takes it; null while there is none
  explicit PopoverInMenuBar(std::function<void*()> anchor);
  ~PopoverInMenuBar() override;

  void adopt(QWindow& window) override;
  void show(const PopoverPlace& place) override;
  void hide() override;
  [[nodiscard]] bool isShown() const override { return popover_.isShown(); }
  void release() override;

 private:
  void follow();
  /// The window becomes a part of the popover.
  void enter();

  std::function<void*()> anchor_;
  MacPopover popover_;
  /// The popover's inside, as the toolkit knows a window that isn't its own; null before a window is shown in it.
  std::unique_ptr<QWindow> inside_;
  QWindow* window_ = nullptr;
  /// While it closes because it was asked to.
  bool isHiding_ = false;
};

}  // namespace quillmere
