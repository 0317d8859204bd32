// A clear window over a whole screen, below the popover: it takes the click that closes that.
#pragma once

#include <QPoint>
#include <QRasterWindow>

class QScreen;

namespace quillmere {

/// Not yet shown. [main] throughout.
class Backdrop final : public QRasterWindow {
  Q_OBJECT

 public:
  explicit Backdrop(QScreen& screen);

 Q_SIGNALS:
  /// The pointer is over it, at a place in the screen's own coordinates.
  void entered(QPoint at);
  void pressed();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmere
