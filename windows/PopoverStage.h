// Where the popover stands on a display. Who may place a window, and who tells of a click beside it, differs from one
// kind of display to the next.
#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <optional>

class QWindow;

namespace quillmere {

/// What is known of the icon when it is clicked, in device-independent pixels.
struct PopoverPlace {
  /// The icon, where the tray tells it.
  std::optional<QRect> icon;
  /// The click, where the panel tells it: in the screen's coordinates, or in the panel's own.
  std::optional<QPoint> click;
};

/// [main] throughout.
class PopoverStage : public QObject {
  Q_OBJECT

 public:
  ~PopoverStage() override;

  /// Each window once, before it is shown for the first time. It outlives its time on the stage.
  virtual void adopt(QWindow& window) = 0;
  /// Shows the adopted window at the panel and gives it the keyboard, now or in a moment.
  virtual void show(const PopoverPlace& place) = 0;
  /// Hides it; nothing happens if it is hidden.
  virtual void hide() = 0;
  /// Whether it is shown, or will be in a moment.
  [[nodiscard]] virtual bool isShown() const = 0;
  /// The window is gone.
  virtual void release() = 0;

 Q_SIGNALS:
  /// A press beside the window that is known by other means than the loss of the keyboard.
  void pressedOutside();
  /// The display takes the window away by itself, because of a press: on the icon perhaps, of which it tells next.
  void takenAway();
};

}  // namespace quillmere
