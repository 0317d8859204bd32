// A symbol in a view: sized like a letter, tinted like one.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// Its implicit size follows pointSize as a font's line does. [main]
class Symbol : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  Q_PROPERTY(double pointSize READ pointSize WRITE setPointSize NOTIFY pointSizeChanged)
  Q_PROPERTY(int weight READ weight WRITE setWeight NOTIFY weightChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
  Q_PROPERTY(bool useGradient READ useGradient WRITE setUseGradient NOTIFY useGradientChanged)

 public:
  explicit Symbol(QQuickItem* parent = nullptr);

  [[nodiscard]] QString name() const { return name_; }
  void setName(const QString& name);
  [[nodiscard]] double pointSize() const { return pointSize_; }
  void setPointSize(double size);
  /// 300 light, 400 regular, 500 medium, 600 semibold.
  [[nodiscard]] int weight() const { return weight_; }
  void setWeight(int weight);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  /// Filled with the brand's gradient in place of the colour.
  [[nodiscard]] bool useGradient() const { return useGradient_; }
  void setUseGradient(bool useGradient);

  /// The height of the box for a point size: even, so that it centres on whole pixels in even boxes.
  [[nodiscard]] static int extentFor(double pointSize);

 Q_SIGNALS:
  void nameChanged();
  void pointSizeChanged();
  void weightChanged();
  void colorChanged();
  void useGradientChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  void resize();

  QString name_;
  double pointSize_ = 13;
  int weight_ = 400;
  QColor color_;
  bool useGradient_ = false;
};

}  // namespace quillmere
