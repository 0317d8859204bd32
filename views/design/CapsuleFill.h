// A capsule filled from its leading to its trailing end, laid over what lies beneath it or added to it as light.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// With addsLight the colours brighten the ground; where the renderer can't add light they are laid over. [main]
class CapsuleFill : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor leading READ leading WRITE setLeading NOTIFY lookChanged)
  Q_PROPERTY(QColor trailing READ trailing WRITE setTrailing NOTIFY lookChanged)
  Q_PROPERTY(bool addsLight READ addsLight WRITE setAddsLight NOTIFY lookChanged)
  Q_PROPERTY(double holeCentre READ holeCentre WRITE setHoleCentre NOTIFY lookChanged)
  Q_PROPERTY(double holeDiameter READ holeDiameter WRITE setHoleDiameter NOTIFY lookChanged)

 public:
  using quillmere::ImageItem::ImageItem;

  [[nodiscard]] QColor leading() const { return leading_; }
  void setLeading(const QColor& color);
  [[nodiscard]] QColor trailing() const { return trailing_; }
  void setTrailing(const QColor& color);
  [[nodiscard]] bool addsLight() const { return addsLight_; }
  void setAddsLight(bool addsLight);
  /// A round hole on the middle line, in points from the leading end; none with a diameter of 0. What stands in it may
  /// then be translucent and still hide the capsule.
  [[nodiscard]] double holeCentre() const { return holeCentre_; }
  void setHoleCentre(double centre);
  [[nodiscard]] double holeDiameter() const { return holeDiameter_; }
  void setHoleDiameter(double diameter);

 Q_SIGNALS:
  void lookChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  QColor leading_;
  QColor trailing_;
  bool addsLight_ = false;
  double holeCentre_ = 0;
  double holeDiameter_ = 0;
};

}  // namespace quillmere
