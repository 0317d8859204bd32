// From keys to intents.
#include "windows/WindowKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>
#include <utility>

namespace quillmere {

namespace {

/// Of the keypad too.
bool isPlainControl(const QKeyEvent& event) {
  return (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier && !event.isAutoRepeat();
}

bool isOurs(int key) { return key == Qt::Key_0 || key == Qt::Key_Comma || key == Qt::Key_Q || key == Qt::Key_W; }

}  // namespace

WindowKeys::WindowKeys(KeyIntents intents) : intents_(std::move(intents)) {}

void WindowKeys::serve(QWindow& window) { window.installEventFilter(this); }

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || isPassingOn_) return QObject::eventFilter(watched, event);
  const auto* press = static_cast<QKeyEvent*>(event);
  if (!isPlainControl(*press) || !isOurs(press->key())) return QObject::eventFilter(watched, event);
  isPassingOn_ = true;
  event->ignore();
  QCoreApplication::sendEvent(watched, event);
  isPassingOn_ = false;
  return event->isAccepted() || perform(*static_cast<QWindow*>(watched), press->key());
}

bool WindowKeys::perform(QWindow& window, int key) {
  switch (key) {
    case Qt::Key_0:
      intents_.openMainWindow();
      return true;
    case Qt::Key_Comma:
      intents_.openSettings();
      return true;
    case Qt::Key_Q:
      intents_.quit();
      return true;
    default:
      window.close();
      return true;
  }
}

}  // namespace quillmere
