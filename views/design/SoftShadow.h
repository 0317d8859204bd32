// A soft shadow or halo of a rounded rectangle, as large as the item, drawn around and below it.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QImage>
#include <QQuickItem>

namespace quillmere {

/// What a shadow looks like; lengths in points. The blur is a Gaussian with radius as its deviation.
struct ShadowShape {
  QSizeF size;
  double corner;
  double radius;
  double offsetDown;
  bool cutOut;

  /// How far the picture reaches beyond the item on every side.
  [[nodiscard]] double reach() const;
};

/// The shadow's opacity picture in black, reach() larger than the shape on every side.
[[nodiscard]] QImage drawShadow(const ShadowShape& shape, double scale);

/// One small texture a look, stretched over any size. cutOut leaves the inside clear, for translucent cards. [main]
class SoftShadow : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY lookChanged)
  Q_PROPERTY(bool useGradient READ useGradient WRITE setUseGradient NOTIFY lookChanged)
  Q_PROPERTY(double corner READ corner WRITE setCorner NOTIFY lookChanged)
  Q_PROPERTY(double blurRadius READ blurRadius WRITE setBlurRadius NOTIFY lookChanged)
  Q_PROPERTY(double offsetDown READ offsetDown WRITE setOffsetDown NOTIFY lookChanged)
  Q_PROPERTY(bool cutOut READ cutOut WRITE setCutOut NOTIFY lookChanged)

 public:
  explicit SoftShadow(QQuickItem* parent = nullptr);

  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  /// The brand's gradient across the item in the colour's place, at the colour's opacity. Only for an item that is no
  /// larger than its corners and its blur need: what is stretched would stretch the gradient with it.
  [[nodiscard]] bool useGradient() const { return useGradient_; }
  void setUseGradient(bool useGradient);
  [[nodiscard]] double corner() const { return corner_; }
  void setCorner(double corner);
  [[nodiscard]] double blurRadius() const { return radius_; }
  void setBlurRadius(double radius);
  [[nodiscard]] double offsetDown() const { return offsetDown_; }
  void setOffsetDown(double offset);
  [[nodiscard]] bool cutOut() const { return cutOut_; }
  void setCutOut(bool cutOut);

 Q_SIGNALS:
  void lookChanged();

 protected:
  void updatePolish() override;
  QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  void changed();

  QColor color_;
  double corner_ = 0;
  double radius_ = 0;
  double offsetDown_ = 0;
  bool cutOut_ = true;
  bool useGradient_ = false;

  QImage image_;
  QRectF place_;
  QSizeF padding_;
  double scale_ = 1;
  bool imageChanged_ = false;
};

}  // namespace quillmere
