// Turns events into wishes for a value.
#include "views/design/SliderHandle.h"

#include <QInputDevice>
#include <algorithm>

namespace quillmere {
namespace {

constexpr double pageStep = 0.1;

/// There is one pointer.
SliderHandle* hoveredHandle = nullptr;

ScrollPhase phaseOf(Qt::ScrollPhase phase) {
  switch (phase) {
    case Qt::ScrollBegin:
      return ScrollPhase::begin;
    case Qt::ScrollUpdate:
    case Qt::ScrollMomentum:
      return ScrollPhase::update;
    case Qt::ScrollEnd:
      return ScrollPhase::end;
    default:
      return ScrollPhase::none;
  }
}

bool isKeyboardReason(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

}  // namespace

SliderHandle::SliderHandle(QQuickItem* parent) : QQuickItem(parent) {
  setAcceptedMouseButtons(Qt::LeftButton);
  setAcceptHoverEvents(true);
  setActiveFocusOnTab(true);
}

SliderHandle::~SliderHandle() {
  if (hoveredHandle == this) hoveredHandle = nullptr;
}

SliderHandle* SliderHandle::hovered() { return hoveredHandle; }

void SliderHandle::setPosition(double position) {
  if (position_ == position) return;
  position_ = position;
  Q_EMIT valueChanged();
  Q_EMIT geometryChanged();
}

void SliderHandle::setFrom(double from) {
  if (geometry_.lower == from) return;
  geometry_.lower = from;
  Q_EMIT minimumValueChanged();
  Q_EMIT geometryChanged();
}

void SliderHandle::setTo(double to) {
  if (geometry_.upper == to) return;
  geometry_.upper = to;
  Q_EMIT maximumValueChanged();
  Q_EMIT geometryChanged();
}

void SliderHandle::setThumbSize(double size) {
  if (geometry_.thumbSize == size) return;
  geometry_.thumbSize = size;
  Q_EMIT geometryChanged();
}

void SliderHandle::setScrollRule(ScrollRule rule) {
  if (scrollRule_ == rule) return;
  scrollRule_ = rule;
  wheel_.reset();
  Q_EMIT scrollRuleChanged();
}

void SliderHandle::setStepSize(double size) {
  if (stepSize_ == size) return;
  stepSize_ = size;
  Q_EMIT stepSizeChanged();
}

void SliderHandle::requestValue(double value) { Q_EMIT moved(geometry_.limited(value)); }

void SliderHandle::increase() { requestValue(position_ + stepSize_); }

void SliderHandle::decrease() { requestValue(position_ - stepSize_); }

void SliderHandle::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
  QQuickItem::geometryChange(newGeometry, oldGeometry);
  if (geometry_.width == newGeometry.width()) return;
  geometry_.width = newGeometry.width();
  Q_EMIT geometryChanged();
}

void SliderHandle::mousePressEvent(QMouseEvent* event) {
  setKeepMouseGrab(true);  // A list beneath must not take a drag for a flick.
  forceActiveFocus(Qt::MouseFocusReason);
  setDragging(true);
  dragTo(event->position().x());
}

void SliderHandle::mouseMoveEvent(QMouseEvent* event) {
  if (dragging_) dragTo(event->position().x());
}

void SliderHandle::mouseReleaseEvent(QMouseEvent*) {
  setKeepMouseGrab(false);
  setDragging(false);
}

void SliderHandle::mouseUngrabEvent() {
  setKeepMouseGrab(false);
  setDragging(false);
}

void SliderHandle::hoverEnterEvent(QHoverEvent*) { setHovering(true); }

void SliderHandle::hoverLeaveEvent(QHoverEvent*) {
  wheel_.reset();
  setHovering(false);
}

void SliderHandle::wheelEvent(QWheelEvent* event) {
  if (scrollRule_ == PassOn) {
    event->ignore();
    return;
  }
  event->accept();
  const ScrollEvent scroll{
      .angle = event->angleDelta().y(),
      .pixels = event->pixelDelta().y(),
      .fromTouchpad = event->device() && event->device()->type() == QInputDevice::DeviceType::TouchPad,
      .phase = phaseOf(event->phase())};
  if (scrollRule_ == Forward) {
    if (const double units = scrollUnits(scroll); units != 0) Q_EMIT scrollDelta(units);
    return;
  }
  const int direction = wheel_.step(scroll);
  // A step below a unit would be cut away, and the wheel could only turn down.
  if (direction != 0) requestValue(position_ + direction * std::max(gainPerScrollStep, stepSize_));
}

bool SliderHandle::scrollBy(double delta) {
  if (scrollRule_ == PassOn) return false;
  if (scrollRule_ == Forward) {
    Q_EMIT scrollDelta(delta);
  } else {
    const double step = std::max(gainPerScrollStep, stepSize_);
    requestValue(position_ + (delta > 0 ? step : -step));
  }
  return true;
}

void SliderHandle::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
      decrease();
      break;
    case Qt::Key_Right:
    case Qt::Key_Up:
      increase();
      break;
    case Qt::Key_PageUp:
      requestValue(position_ + pageStep);
      break;
    case Qt::Key_PageDown:
      requestValue(position_ - pageStep);
      break;
    case Qt::Key_Home:
      requestValue(geometry_.lower);
      break;
    case Qt::Key_End:
      requestValue(geometry_.upper);
      break;
    default:
      event->ignore();
      return;
  }
  setVisualFocus(true);
  event->accept();
}

void SliderHandle::focusInEvent(QFocusEvent* event) {
  QQuickItem::focusInEvent(event);
  setVisualFocus(isKeyboardReason(event->reason()));
}

void SliderHandle::focusOutEvent(QFocusEvent* event) {
  QQuickItem::focusOutEvent(event);
  setVisualFocus(false);
}

void SliderHandle::dragTo(double x) { requestValue(geometry_.valueAt(x)); }

void SliderHandle::setDragging(bool dragging) {
  if (dragging_ == dragging) return;
  dragging_ = dragging;
  Q_EMIT draggingChanged();
}

void SliderHandle::setHovering(bool hovering) {
  if (hovering_ == hovering) return;
  hovering_ = hovering;
  if (hovering) {
    hoveredHandle = this;
  } else if (hoveredHandle == this) {
    hoveredHandle = nullptr;
  }
  Q_EMIT hoveringChanged();
}

void SliderHandle::setVisualFocus(bool visualFocus) {
  if (visualFocus_ == visualFocus) return;
  visualFocus_ = visualFocus;
  Q_EMIT visualFocusChanged();
}

}  // namespace quillmere
