// Clear, and as large as the screen.
#include "windows/Backdrop.h"

#include <QEnterEvent>
#include <QPainter>
#include <QScreen>

namespace quillmere {

Backdrop::Backdrop(QScreen& screen) {
  auto format = requestedFormat();
  format.setAlphaBufferSize(8);
  setFormat(format);
  setScreen(&screen);
  setGeometry(screen.geometry());
}

bool Backdrop::event(QEvent* event) {
  if (event->type() == QEvent::Enter) {
    Q_EMIT entered(static_cast<QEnterEvent*>(event)->position().toPoint());
  } else if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TouchBegin) {
    Q_EMIT pressed();
    return true;
  }
  return QRasterWindow::event(event);
}

void Backdrop::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(QRect({}, size()), Qt::transparent);
}

}  // namespace quillmere
