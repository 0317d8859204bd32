// The order in which the Tab key goes through the items of a list.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQuickItem>

namespace quillmere {

/// The key follows the order in which items were made, which in a list says nothing of where they stand. [main]
class TabOrder final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  using QObject::QObject;

  /// From now on, until others come, these siblings are reached in this order. What lies over what among those that
  /// overlap changes with it, unless they have a z of their own.
  Q_INVOKABLE static void follow(const QVariantList& items);
};

}  // namespace quillmere
