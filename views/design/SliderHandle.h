// The level slider's hands: mouse, wheel, keys and accessibility on one invisible item.
// It never keeps a value of its own; it asks for one with moved() and shows the position it is given.
#pragma once

#include <QQuickItem>

#include "core/ScrollRule.h"
#include "views/design/SliderGeometry.h"

namespace quillmere {

/// [main]
class SliderHandle : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(double position READ position WRITE setPosition NOTIFY valueChanged)
  Q_PROPERTY(double from READ minimumValue WRITE setFrom NOTIFY minimumValueChanged)
  Q_PROPERTY(double to READ maximumValue WRITE setTo NOTIFY maximumValueChanged)
  Q_PROPERTY(double thumbSize READ thumbSize WRITE setThumbSize NOTIFY geometryChanged)
  Q_PROPERTY(ScrollRule scrollRule READ scrollRule WRITE setScrollRule NOTIFY scrollRuleChanged)

  Q_PROPERTY(double fraction READ fraction NOTIFY geometryChanged)
  Q_PROPERTY(double thumbCentre READ thumbCentre NOTIFY geometryChanged)
  Q_PROPERTY(double fillWidth READ fillWidth NOTIFY geometryChanged)
  Q_PROPERTY(bool dragging READ dragging NOTIFY draggingChanged)
  Q_PROPERTY(bool hovering READ hovering NOTIFY hoveringChanged)
  Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)

  // What assistive technology reads and writes: a write is a wish, like a drag.
  Q_PROPERTY(double value READ position WRITE requestValue NOTIFY valueChanged)
  Q_PROPERTY(double minimumValue READ minimumValue NOTIFY minimumValueChanged)
  Q_PROPERTY(double maximumValue READ maximumValue NOTIFY maximumValueChanged)
  Q_PROPERTY(double stepSize READ stepSize WRITE setStepSize NOTIFY stepSizeChanged)

 public:
  enum ScrollRule {
    OwnStep,  ///< Each step of the wheel moves the value by 0.02, or by stepSize where that is more.
    Forward,  ///< scrollDelta() tells the distance; the event is used up.
    PassOn,   ///< The event goes on to what lies beneath.
  };
  Q_ENUM(ScrollRule)

  explicit SliderHandle(QQuickItem* parent = nullptr);
  ~SliderHandle() override;

  [[nodiscard]] double position() const { return position_; }
  void setPosition(double position);
  [[nodiscard]] double minimumValue() const { return geometry_.lower; }
  void setFrom(double from);
  [[nodiscard]] double maximumValue() const { return geometry_.upper; }
  void setTo(double to);
  [[nodiscard]] double thumbSize() const { return geometry_.thumbSize; }
  void setThumbSize(double size);
  [[nodiscard]] ScrollRule scrollRule() const { return scrollRule_; }
  void setScrollRule(ScrollRule rule);

  [[nodiscard]] double fraction() const { return geometry_.fraction(position_); }
  [[nodiscard]] double thumbCentre() const { return geometry_.thumbCentre(position_); }
  [[nodiscard]] double fillWidth() const { return geometry_.fillWidth(position_); }
  [[nodiscard]] bool dragging() const { return dragging_; }
  [[nodiscard]] bool hovering() const { return hovering_; }
  [[nodiscard]] bool visualFocus() const { return visualFocus_; }
  /// How far an arrow key and assistive technology move the value; 0.02 where nobody says otherwise. A slider that
  /// stands for whole units says what one of them is.
  [[nodiscard]] double stepSize() const { return stepSize_; }
  void setStepSize(double size);

  void requestValue(double value);
  /// The one that the pointer lies over; null where it lies over none.
  [[nodiscard]] static SliderHandle* hovered();
  /// A scroll that somebody else has seen, with its distance as that one counts it: upwards positive, a point is a unit
  /// of ScrollRule. A step of the slider's own is one a call, downwards where the distance is 0. False: it is not for
  /// this slider.
  bool scrollBy(double delta);
  Q_INVOKABLE void increase();
  Q_INVOKABLE void decrease();

 Q_SIGNALS:
  /// The user asks for this value, within the range.
  void moved(double value);
  /// Only with ScrollRule Forward: units as in core/ScrollRule.h, upwards positive. Not for an event that has none.
  void scrollDelta(double delta);

  void valueChanged();
  void minimumValueChanged();
  void maximumValueChanged();
  void geometryChanged();
  void scrollRuleChanged();
  void stepSizeChanged();
  void draggingChanged();
  void hoveringChanged();
  void visualFocusChanged();

 protected:
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseUngrabEvent() override;
  void hoverEnterEvent(QHoverEvent* event) override;
  void hoverLeaveEvent(QHoverEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void dragTo(double x);
  void setDragging(bool dragging);
  void setHovering(bool hovering);
  void setVisualFocus(bool visualFocus);

  SliderGeometry geometry_;
  ScrollSteps wheel_;
  double position_ = 0;
  double stepSize_ = gainPerScrollStep;
  ScrollRule scrollRule_ = OwnStep;
  bool dragging_ = false;
  bool hovering_ = false;
  bool visualFocus_ = false;
};

}  // namespace quillmere
