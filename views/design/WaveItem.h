// The wave as an item: draws the moment it is given.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// time in seconds of the wall clock. [main]
class WaveItem : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int liveCount READ liveCount WRITE setLiveCount NOTIFY lookChanged)
  Q_PROPERTY(double averageGain READ averageGain WRITE setAverageGain NOTIFY lookChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY lookChanged)
  Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY lookChanged)
  Q_PROPERTY(double time READ time WRITE setTime NOTIFY timeChanged)

 public:
  explicit WaveItem(QQuickItem* parent = nullptr);

  [[nodiscard]] int liveCount() const { return liveCount_; }
  void setLiveCount(int count);
  [[nodiscard]] double averageGain() const { return averageGain_; }
  void setAverageGain(double gain);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  [[nodiscard]] double lineWidth() const { return lineWidth_; }
  void setLineWidth(double width);
  [[nodiscard]] double time() const { return time_; }
  void setTime(double seconds);

 Q_SIGNALS:
  void lookChanged();
  void timeChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;
  [[nodiscard]] double margin() const override;

 private:
  void changed();

  int liveCount_ = 0;
  double averageGain_ = 0;
  QColor color_;
  double lineWidth_ = 2;
  double time_ = 0;
};

}  // namespace quillmere
