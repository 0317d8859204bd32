// Sends the window the event that a pointer on its way out would have brought.
#include "views/design/HoverGuard.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>

namespace quillmere {

void HoverGuard::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change != ItemSceneChange) return;
  disconnect(watch_);
  if (!data.window) return;
  watch_ = connect(data.window, &QWindow::visibleChanged, this, [this](bool visible) {
    if (visible || !window()) return;
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(window(), &leave);
  });
}

}  // namespace quillmere
