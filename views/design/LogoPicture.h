// The brand's tile without its shadow: gradient, rim, and three tracks of a mixer.
#pragma once

#include <QtQml/qqmlregistration.h>

#include "views/design/ImageItem.h"

namespace quillmere {

/// Every measure is a share of the width. [main]
class LogoPicture : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT

 public:
  using quillmere::ImageItem::ImageItem;

  /// The tile's corner as a share of its side.
  static constexpr double cornerShare = 0.235;

 protected:
  QImage paintPicture(QSize pixels, double scale) override;
};

/// The tile's picture for any place that shows it.
[[nodiscard]] QImage drawLogo(double side, QSize pixels, double scale);

}  // namespace quillmere
