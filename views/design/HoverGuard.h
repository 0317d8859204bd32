// Takes the pointer off a window that is hidden: no one tells its items, and shown again they would still be hovered.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QMetaObject>
#include <QQuickItem>

namespace quillmere {

/// One of them anywhere in a window does for all of it. [main]
class HoverGuard : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT

 public:
  using QQuickItem::QQuickItem;

 protected:
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  QMetaObject::Connection watch_;
};

}  // namespace quillmere
