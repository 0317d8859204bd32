// One window of the program: made when it is shown, dropped when it has been hidden for a while.
#include "windows/Scene.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QSignalBlocker>
#include <utility>

namespace quillmere {

namespace {

/// When windows go, for who asks: QT_LOGGING_RULES="app.quillmere.scene.debug=true".
Q_LOGGING_CATEGORY(category, "app.quillmere.scene", QtInfoMsg)

}  // namespace

Scene::Scene(const Runtime& runtime, WindowFactory factory, Duration keepHidden, SightTest sight)
    : runtime_(runtime), factory_(std::move(factory)), keepHidden_(keepHidden), sight_(std::move(sight)) {}

Scene::~Scene() {
  keep();
  stopLooking();
}

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
      if (!visible) hasBeenSeen_ = false;
      if (visible) {
        keep();
        Q_EMIT shown();
      } else {
        // The pointer that lay over it is told of elsewhere only: what it lay on would have it still, when shown again.
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(window_.get(), &leave);
        Q_EMIT hidden();
        scheduleDrop();
      }
    });
  }
  return *window_;
}

void Scene::show() {
  // A desktop that has been given a reason decides by that. The toolkit takes the reason with the request.
  const bool hasReason = !qEnvironmentVariableIsEmpty("XDG_ACTIVATION_TOKEN");
  auto& window = prepare();
  const bool wasThere = window.isVisible();
  bringForward();
  stopLooking();
  if (wasThere && !hasReason && sight_) lookForIt();
}

void Scene::bringForward() {
  // Its show() would make a maximised window a normal one.
  if (window_->isVisible()) {
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowStates(Qt::WindowMinimized));
  } else {
    window_->setVisible(true);
  }
  window_->raise();
  window_->requestActivate();
}

void Scene::lookForIt() {
  // Whether anybody wants to see a window comes to light with its next picture.
  if (auto* window = qobject_cast<QQuickWindow*>(window_.get())) {
    probe_ = std::make_unique<FrameProbe>(*window->contentItem());
  }
  lookTimer_ = runtime_.main.postAfter(patience, [this] { look(false); });
}

void Scene::look(bool isLast) {
  lookTimer_ = 0;
  // One that has never been seen is still on its way.
  const auto sight = isVisible() && hasBeenSeen_ ? sight_(*window_) : Sight::seen;
  if (sight == Sight::doubtful && !isLast) {
    lookTimer_ = runtime_.main.postAfter(patience, [this] { look(true); });
    return;
  }
  probe_.reset();
  if (sight == Sight::seen) {
    qCDebug(category, "window left in its place");
  } else {
    fetch();
  }
}

void Scene::stopLooking() {
  if (lookTimer_ != 0) runtime_.main.cancelTimer(std::exchange(lookTimer_, 0));
  probe_.reset();
}

void Scene::fetch() {
  qCDebug(category, "window fetched");
  {
    // For the person it has been open all the time: to whoever begins anew with each showing, too.
    const QSignalBlocker nobodyIsTold(window_.get());
    window_->setVisible(false);
    window_->setVisible(true);
  }
  bringForward();
}

void Scene::hide() {
  if (window_) window_->hide();
}

bool Scene::isVisible() const { return window_ && window_->isVisible(); }

bool Scene::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window_.get()) {
    if (event->type() == QEvent::Close) Q_EMIT willClose();
    if (event->type() == QEvent::Expose && window_->isExposed()) hasBeenSeen_ = true;
  }
  return QObject::eventFilter(watched, event);
}

void Scene::scheduleDrop() {
  keep();
  dropTimer_ = runtime_.main.postAfter(keepHidden_, [this] {
    dropTimer_ = 0;
    if (!window_ || window_->isVisible()) return;
    stopLooking();
    window_.reset();
    if (dropped_) dropped_();
    qCDebug(category, "window dropped");
  });
}

void Scene::keep() {
  if (dropTimer_ != 0) runtime_.main.cancelTimer(std::exchange(dropTimer_, 0));
}

}  // namespace quillmere
