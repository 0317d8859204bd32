// A rounded rectangle filled with the brand's gradient.
#pragma once

#include <QtQml/qqmlregistration.h>

#include "views/design/ImageItem.h"

namespace quillmere {

/// radius in points; half the height makes a capsule. [main]
class GradientFill : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)

 public:
  using quillmere::ImageItem::ImageItem;

  [[nodiscard]] double radius() const { return radius_; }
  void setRadius(double radius);

 Q_SIGNALS:
  void radiusChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  double radius_ = 0;
};

}  // namespace quillmere
