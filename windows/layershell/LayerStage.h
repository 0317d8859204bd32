// The popover as a surface of the layer shell, over clear surfaces that cover the screens: they tell where the pointer
// is that has clicked the icon, which no Wayland client is told otherwise, and take the click that closes the popover.
#pragma once

#include "runtime/Runtime.h"
#include "windows/Backdrops.h"
#include "windows/PopoverStage.h"

class QScreen;

namespace quillmere::layershell {

/// [main] throughout.
class LayerStage final : public PopoverStage {
  Q_OBJECT

 public:
  explicit LayerStage(const Runtime& runtime);
  ~LayerStage() override;

  void adopt(QWindow& window) override;
  void show(const PopoverPlace& place) override;
  void hide() override;
  [[nodiscard]] bool isShown() const override;
  void release() override;

 private:
  void pointerFound(const QScreen& screen, QPoint at);
  /// By the pointer, in the coordinates of a screen of that size; absent if it is on none.
  void place(const std::optional<QPoint>& pointer, QSize screen);
  void stopWaiting();

  Runtime runtime_;
  QWindow* window_ = nullptr;
  Backdrops backdrops_;
  /// Runs until the window is shown, wherever the pointer is.
  TimerID timer_ = 0;
  /// When it was last to be shown.
  MonotonicTime wished_{};
  /// Of several screens that tell of the pointer, the first counts.
  bool isPointerFound_ = false;
};

}  // namespace quillmere::layershell
