// One window of the program: made when it is shown, dropped when it has been hidden for a while.
#include "windows/Scene.h"

#include <QCloseEvent>
#include <QEvent>
#include <QLoggingCategory>
#include <utility>

namespace quillmere {

namespace {

/// When windows go, for who asks: QT_LOGGING_RULES="app.quillmere.scene.debug=true".
Q_LOGGING_CATEGORY(category, "app.quillmere.scene", QtInfoMsg)

}  // namespace

Scene::Scene(const Runtime& runtime, WindowFactory factory, Duration keepHidden)
    : runtime_(runtime), factory_(std::move(factory)), keepHidden_(keepHidden) {}

Scene::~Scene() { keep(); }

QWindow& Scene::prepare() {
  keep();
  if (!window_) {
    window_ = factory_();
    window_->installEventFilter(this);
    connect(window_.get(), &QWindow::activeChanged, this, [this] {
      if (!window_) return;
      if (window_->isActive()) {
        Q_EMIT becameActive();
      } else {
        Q_EMIT lostFocus();
      }
    });
    connect(window_.get(), &QWindow::visibleChanged, this, [this](bool visible) {
      if (visible) {
        keep();
        Q_EMIT shown();
      } else {
        Q_EMIT hidden();
        scheduleDrop();
      }
    });
  }
  return *window_;
}

void Scene::show() {
  auto& window = prepare();
  window.show();
  window.raise();
  window.requestActivate();
}

void Scene::hide() {
  if (window_) window_->hide();
}

bool Scene::isVisible() const { return window_ && window_->isVisible(); }

bool Scene::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Close && watched == window_.get()) Q_EMIT willClose();
  return QObject::eventFilter(watched, event);
}

void Scene::scheduleDrop() {
  keep();
  dropTimer_ = runtime_.main.postAfter(keepHidden_, [this] {
    dropTimer_ = 0;
    if (!window_ || window_->isVisible()) return;
    window_.reset();
    if (dropped_) dropped_();
    qCDebug(category, "window dropped");
  });
}

void Scene::keep() {
  if (dropTimer_ != 0) runtime_.main.cancelTimer(std::exchange(dropTimer_, 0));
}

}  // namespace quillmere
