// A mark of the brand (the wordmark, the shush), tinted in one colour.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// Fits the mark into the item; aspect is its width by its height. [main]
class TemplateImage : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString mark READ mark WRITE setMark NOTIFY markChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
  Q_PROPERTY(bool available READ available NOTIFY markChanged)
  Q_PROPERTY(double aspect READ aspect NOTIFY markChanged)

 public:
  explicit TemplateImage(QQuickItem* parent = nullptr);

  [[nodiscard]] QString mark() const { return mark_; }
  void setMark(const QString& mark);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  [[nodiscard]] bool available() const { return !grid_.isEmpty(); }
  [[nodiscard]] double aspect() const { return available() ? grid_.width() / grid_.height() : 1; }

 Q_SIGNALS:
  void markChanged();
  void colorChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  QString mark_;
  QColor color_;
  QSizeF grid_;
};

}  // namespace quillmere
