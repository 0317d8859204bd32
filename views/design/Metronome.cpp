// Beats at the faster of the wanted rates; the slower listeners hear every second beat.
#include "views/design/Metronome.h"

#include <QCoreApplication>
#include <QTimerEvent>
#include <algorithm>

#include "core/Date.h"
#include "runtime/Clocks.h"

namespace quillmere {
namespace {

// Whole milliseconds just above 1/60 s and twice that, so that neither rate is ever exceeded.
constexpr int sixtyMillis = 17;
constexpr int thirtyMillis = 2 * sixtyMillis;

}  // namespace

Metronome::Metronome(const Clocks& clocks) : clocks_(clocks) {}

Metronome& Metronome::shared() {
  static const SystemClocks clocks;
  static Metronome metronome(clocks);
  return metronome;
}

void Metronome::join(Listener* listener, Rate rate) {
  const auto seat = std::ranges::find(seats_, listener, &Seat::listener);
  if (seat != seats_.end()) {
    seat->rate = rate;
  } else {
    seats_.push_back({listener, rate});
  }
  retune();
}

void Metronome::leave(Listener* listener) {
  std::erase_if(seats_, [listener](const Seat& seat) { return seat.listener == listener; });
  retune();
}

double Metronome::seconds() const { return clocks_.now().secondsSinceReference; }

void Metronome::retune() {
  int wanted = 0;
  if (!seats_.empty()) {
    const bool fast = std::ranges::any_of(seats_, [](const Seat& seat) { return seat.rate == Rate::Sixty; });
    wanted = fast ? sixtyMillis : thirtyMillis;
  }
  if (wanted == intervalMillis_) return;
  intervalMillis_ = wanted;
  if (wanted == 0) {
    timer_.stop();
  } else {
    timer_.start(wanted, Qt::PreciseTimer, this);
  }
}

void Metronome::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_.timerId()) {
    QObject::timerEvent(event);
    return;
  }
  offBeat_ = !offBeat_;
  const bool fast = intervalMillis_ == sixtyMillis;
  const double now = seconds();
  // By index over a fixed count: a listener's reaction may end another listener's life only later, by the event loop.
  for (std::size_t i = 0; i < seats_.size(); ++i) {
    if (fast && offBeat_ && seats_[i].rate == Rate::Thirty) continue;
    seats_[i].listener->beat(now);
  }
}

}  // namespace quillmere
