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

 public:
  using quillmere::ImageItem::ImageItem;

  [[nodiscard]] QColor leading() const { return leading_; }
  void setLeading(const QColor& color);
  [[nodiscard]] QColor trailing() const { return trailing_; }
  void setTrailing(const QColor& color);
  [[nodiscard]] bool addsLight() const { return addsLight_; }
  void setAddsLight(bool addsLight);

 signals:
  void lookChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  QColor leading_;
  QColor trailing_;
  bool addsLight_ = false;
};

}  // namespace quillmere
