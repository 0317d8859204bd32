// The dashed outline of a place where something can be added.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// One point wide, within the item; radius in points. [main]
class DashedBorder : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY lookChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY lookChanged)

 public:
  using quillmere::ImageItem::ImageItem;

  [[nodiscard]] double radius() const { return radius_; }
  void setRadius(double radius);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);

 Q_SIGNALS:
  void lookChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  double radius_ = 0;
  QColor color_;
};

}  // namespace quillmere
