// The ring of a progress: its track and its arc.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>

#include "views/design/ImageItem.h"

namespace quillmere {

/// progress is shown from 0.001 through 1. lineWidth in points, the ring lies within the item. [main]
class RingArc : public quillmere::ImageItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double progress READ progress WRITE setProgress NOTIFY progressChanged)
  Q_PROPERTY(QColor track READ track WRITE setTrack NOTIFY lookChanged)
  Q_PROPERTY(QColor fill READ fill WRITE setFill NOTIFY lookChanged)
  Q_PROPERTY(bool useGradient READ useGradient WRITE setUseGradient NOTIFY lookChanged)
  Q_PROPERTY(double lineWidth READ lineWidth WRITE setLineWidth NOTIFY lookChanged)

 public:
  using quillmere::ImageItem::ImageItem;

  [[nodiscard]] double progress() const { return progress_; }
  void setProgress(double progress);
  [[nodiscard]] QColor track() const { return track_; }
  void setTrack(const QColor& track);
  [[nodiscard]] QColor fill() const { return fill_; }
  void setFill(const QColor& fill);
  [[nodiscard]] bool useGradient() const { return useGradient_; }
  void setUseGradient(bool useGradient);
  [[nodiscard]] double lineWidth() const { return lineWidth_; }
  void setLineWidth(double width);

  /// The share of the circle that is stroked for a progress: at least 0.001, at most 1.
  [[nodiscard]] static double trim(double progress);

 Q_SIGNALS:
  void progressChanged();
  void lookChanged();

 protected:
  QImage paintPicture(QSize pixels, double scale) override;

 private:
  double progress_ = 0;
  QColor track_;
  QColor fill_;
  bool useGradient_ = false;
  double lineWidth_ = 4;
};

/// The picture of a ring; the item's, and the tests'.
struct RingPicture {
  double diameter;
  double lineWidth;
  double progress;
  QColor track;
  QColor fill;
  bool useGradient;
};
[[nodiscard]] QImage drawRing(const RingPicture& ring, QSize pixels, double scale);

}  // namespace quillmere
