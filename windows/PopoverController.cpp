// The popover's life.
#include "windows/PopoverController.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <utility>

namespace quillmere {

namespace {
/// A popover that was just closed opens again without being built anew.
constexpr auto keepHidden = std::chrono::seconds(20);
/// The click on the icon takes the focus, or the window, away first and then asks to toggle: both are one wish to
/// close.
constexpr auto focusLossGrace = std::chrono::milliseconds(300);
/// A window that was shown just before the popover may be given the focus just after it.
constexpr auto settling = std::chrono::seconds(1);
}  // namespace

PopoverController::PopoverController(const Runtime& runtime, WindowFactory factory, std::unique_ptr<PopoverStage> stage,
                                     SightTest sight)
    : runtime_(runtime), stage_(std::move(stage)), scene_(runtime, std::move(factory), keepHidden, std::move(sight)) {
  scene_.onDropped([this] {
    stage_->release();
    Q_EMIT dropped();
  });
  connect(&scene_, &Scene::becameActive, this, [this] { isSettled_ = true; });
  connect(&scene_, &Scene::lostFocus, this, &PopoverController::closeForAnother);
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* window) {
    if (window != nullptr && window != scene_.window()) anotherHasFocus();
  });
  connect(stage_.get(), &PopoverStage::pressedOutside, this, &PopoverController::close);
  connect(stage_.get(), &PopoverStage::takenAway, this, [this] { closedForAnother_ = runtime_.clocks.monotonicNow(); });
}

PopoverController::~PopoverController() {
  // The window goes before the stage, and tells of its going.
  disconnect(&scene_, nullptr, this, nullptr);
}

void PopoverController::toggle(const PopoverPlace& place) {
  if (isShown()) {
    close();
  } else if (runtime_.clocks.monotonicNow() - closedForAnother_ > focusLossGrace) {
    open(place);
  }
}

void PopoverController::close() { stage_->hide(); }

void PopoverController::closeForAnother() {
  if (!isShown()) return;
  closedForAnother_ = runtime_.clocks.monotonicNow();
  close();
}

void PopoverController::anotherHasFocus() {
  // One that never had the focus, because the desktop gave it none, has none to lose.
  if (!isShown() || isSettled_ || runtime_.clocks.monotonicNow() - openedAt_ > settling) {
    closeForAnother();
  } else {
    scene_.window()->requestActivate();
  }
}

void PopoverController::open(const PopoverPlace& place) {
  openedAt_ = runtime_.clocks.monotonicNow();
  isSettled_ = false;
  const bool isNew = scene_.window() == nullptr;
  auto& window = scene_.prepare();
  if (isNew) {
    window.installEventFilter(this);
    stage_->adopt(window);
  }
  stage_->show(place);
}

bool PopoverController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && !isPassingOn_ && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    // A menu that is open closes first, and says that it has by taking the key.
    isPassingOn_ = true;
    event->ignore();
    QCoreApplication::sendEvent(watched, event);
    isPassingOn_ = false;
    if (!event->isAccepted()) close();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillmere
