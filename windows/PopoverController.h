// The popover's life: shown at the icon, closed by a click outside, by Escape or by the icon again.
#pragma once

#include <QObject>
#include <QRect>
#include <functional>
#include <optional>

#include "shell/Scene.h"

namespace quillmere {

/// [main]
class PopoverController final : public QObject {
  Q_OBJECT

 public:
  /// @param anchor  where the status item is, asked at each opening
  PopoverController(const Runtime& runtime, WindowFactory factory, std::function<std::optional<QRect>()> anchor);
  ~PopoverController() override;

  void toggle();
  void close();
  [[nodiscard]] bool isShown() const { return scene_.isVisible(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void open();
  void place();

  Runtime runtime_;
  std::function<std::optional<QRect>()> anchor_;
  std::optional<QRect> anchorAtOpening_;
  MonotonicTime closedByFocusLoss_{};
  Scene scene_;
};

}  // namespace quillmere
