// Told by the toolkit.
#include "windows/NativeWindow.h"

#include <QPlatformSurfaceEvent>
#include <QWindow>
#include <utility>

namespace quillmere {

namespace {

class Watch final : public QObject {
 public:
  Watch(QWindow& window, std::function<void(QWindow&)> made)
      : QObject(&window), window_(window), made_(std::move(made)) {
    window.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::PlatformSurface) {
      const auto type = static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType();
      if (type == QPlatformSurfaceEvent::SurfaceCreated) made_(window_);
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  QWindow& window_;
  std::function<void(QWindow&)> made_;
};

}  // namespace

void onNativeWindow(QWindow& window, std::function<void(QWindow&)> made) {
  if (window.handle() != nullptr) made(window);
  new Watch(window, std::move(made));
}

}  // namespace quillmere
