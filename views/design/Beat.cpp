// Joins the metronome exactly while somebody could see the movement.
#include "views/design/Beat.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

#include "views/design/Appearance.h"
#include "views/design/Rhythm.h"

namespace quillmere {

Beat::Beat(QQuickItem* parent) : QQuickItem(parent), time_(Metronome::shared().seconds()) {
  connect(&Appearance::shared(), &Appearance::motionChanged, this, &Beat::decide);
  watch(window());  // A parent given here is in its window before itemChange() is ours.
  standStill();
}

Beat::~Beat() {
  if (beating_) Metronome::shared().leave(this);
}

void Beat::setRunning(bool running) {
  if (running_ == running) return;
  running_ = running;
  Q_EMIT runningChanged();
  decide();
}

void Beat::setRate(Rate rate) {
  if (rate_ == rate) return;
  rate_ = rate;
  Q_EMIT rateChanged();
  if (beating_) join();
}

double Beat::shimmer() const { return rhythm::shimmerOpacity(rhythm::shimmerPhase(time_)); }

double Beat::pulse() const { return rhythm::livePulse(time_); }

double Beat::haloScale() const { return rhythm::haloScale(pulse()); }

void Beat::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change == ItemSceneChange) watch(data.window);
  if (change == ItemSceneChange || change == ItemVisibleHasChanged) decide();
}

bool Beat::eventFilter(QObject* watched, QEvent* event) {
  const bool handled = QQuickItem::eventFilter(watched, event);
  if (event->type() == QEvent::Expose || event->type() == QEvent::Show || event->type() == QEvent::Hide) {
    // The window's own answer is up to date only after the event.
    QMetaObject::invokeMethod(this, &Beat::decide, Qt::QueuedConnection);
  }
  return handled;
}

void Beat::beat(double seconds) {
  // An item that has been scrolled out of its window needs no new frame.
  const QRectF place = mapRectToScene(parentItem() ? parentItem()->boundingRect() : boundingRect());
  if (window() && !place.isEmpty() && !QRectF(QPointF(), window()->size()).intersects(place)) return;
  time_ = seconds;
  Q_EMIT timeChanged();
}

void Beat::join() {
  // Where the processor draws, each frame is taken from what else it has to do, and half of them will do.
  const bool isDrawnByProcessor = watched_ && watched_->rendererInterface() &&
                                  watched_->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
  const bool isFast = rate_ == Sixty && !isDrawnByProcessor;
  Metronome::shared().join(this, isFast ? Metronome::Rate::Sixty : Metronome::Rate::Thirty);
}

void Beat::watch(QQuickWindow* window) {
  if (watched_ == window) return;
  if (watched_) watched_->removeEventFilter(this);
  watched_ = window;
  if (watched_) watched_->installEventFilter(this);
}

void Beat::standStill() {
  if (!Appearance::shared().reducesMotion() || time_ == 0) return;
  time_ = 0;
  Q_EMIT timeChanged();
}

void Beat::decide() {
  standStill();
  const bool moves = running_ && !Appearance::shared().reducesMotion();
  const bool wanted = moves && isVisible() && watched_ && watched_->isExposed();
  if (wanted == beating_) return;
  beating_ = wanted;
  if (wanted) {
    time_ = Metronome::shared().seconds();
    join();
    Q_EMIT timeChanged();
  } else {
    Metronome::shared().leave(this);
  }
  Q_EMIT beatingChanged();
}

}  // namespace quillmere
