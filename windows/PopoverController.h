// The popover's life: shown at the icon, closed by a click outside, by Escape or by the icon again.
#pragma once

#include <QObject>
#include <QRect>
#include <optional>

#include "windows/Scene.h"

namespace quillmere {

/// [main]
class PopoverController final : public QObject {
  Q_OBJECT

 public:
  PopoverController(const Runtime& runtime, WindowFactory factory);
  ~PopoverController() override;

  /// @param anchor  where the status item is, as far as that is known
  void toggle(const std::optional<QRect>& anchor);
  void close();
  [[nodiscard]] bool isShown() const { return scene_.isVisible(); }
  /// Whether the popover is shown, or kept for a quick return.
  [[nodiscard]] bool isHeld() const { return scene_.window() != nullptr; }

 Q_SIGNALS:
  void dropped();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void open(const std::optional<QRect>& anchor);
  void place();

  Runtime runtime_;
  std::optional<QRect> anchorAtOpening_;
  MonotonicTime closedByFocusLoss_{};
  Scene scene_;
};

}  // namespace quillmere
