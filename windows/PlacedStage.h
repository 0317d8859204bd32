// The popover on displays where a program places its windows itself: X servers, those of Wayland sessions included.
#pragma once

#include "windows/Backdrops.h"
#include "windows/PopoverStage.h"

namespace quillmere {

/// [main] throughout.
class PlacedStage final : public PopoverStage {
  Q_OBJECT

 public:
  void adopt(QWindow& window) override;
  void show(const PopoverPlace& place) override;
  void hide() override;
  [[nodiscard]] bool isShown() const override;
  void release() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void place();

  QWindow* window_ = nullptr;
  std::optional<QRect> anchor_;
  /// The window is kept from who arranges windows, and so has to ask for what that one would have given it.
  bool isUnmanaged_ = false;
  /// A click on the empty desktop takes the keyboard from nobody.
  bool hasDeafDesktop_ = false;
  Backdrops backdrops_;
};

}  // namespace quillmere
