// The popover's life: shown at the icon, closed by a click outside, by Escape or by the icon again.
#pragma once

#include <QObject>
#include <memory>

#include "windows/PopoverStage.h"
#include "windows/Scene.h"

namespace quillmere {

/// [main]
class PopoverController final : public QObject {
  Q_OBJECT

 public:
  PopoverController(const Runtime& runtime, WindowFactory factory, std::unique_ptr<PopoverStage> stage,
                    SightTest sight = {});
  ~PopoverController() override;

  void toggle(const PopoverPlace& place);
  void close();
  [[nodiscard]] bool isShown() const { return stage_->isShown(); }
  /// Whether the popover is shown, or kept for a quick return.
  [[nodiscard]] bool isHeld() const { return scene_.window() != nullptr; }

 Q_SIGNALS:
  void dropped();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void open(const PopoverPlace& place);
  void closeForAnother();
  /// Another window of the program.
  void anotherHasFocus();

  Runtime runtime_;
  std::unique_ptr<PopoverStage> stage_;
  MonotonicTime closedForAnother_{};
  MonotonicTime openedAt_{};
  /// Whether it has had the focus since it was opened.
  bool isSettled_ = false;
  /// While a key is with the window itself.
  bool isPassingOn_ = false;
  Scene scene_;
};

}  // namespace quillmere
