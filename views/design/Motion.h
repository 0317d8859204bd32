// Springs and ease-outs as easing curves: what the animations of the look are made of.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QVariant>

namespace quillmere {

/// A spring is told by its response (the period of the undamped swing, in seconds) and its damping fraction.
class Motion : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(QVariantList easeOutCurve READ easeOutCurve CONSTANT)
  Q_PROPERTY(bool reduced READ reduced NOTIFY reducedChanged FINAL)

 public:
  explicit Motion(QObject* parent = nullptr);

  /// Whether the desktop wants nothing to move that need not: animations then take no time.
  [[nodiscard]] static bool reduced();

  /// How far a spring has come at a time after its release, 1 being its rest; may swing beyond 1.
  [[nodiscard]] static double springPosition(double seconds, double response, double dampingFraction);
  /// Milliseconds until a spring stays within a thousandth of its rest.
  Q_INVOKABLE static int springMillis(double response, double dampingFraction);
  /// Control points of the spring's way over springMillis(), for Easing.Bezier.
  Q_INVOKABLE static QVariantList springCurve(double dampingFraction);
  /// Control points of the ease-out.
  [[nodiscard]] static QVariantList easeOutCurve();

 Q_SIGNALS:
  void reducedChanged();
};

}  // namespace quillmere
