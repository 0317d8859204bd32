// One timer for everything that moves by itself, however many rows are alive.
// It runs only while somebody listens.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <vector>

namespace quillmere {

class Clocks;

/// [main]
class Metronome : public QObject {
  Q_OBJECT

 public:
  enum class Rate {
    Thirty,  ///< At most 30 beats a second.
    Sixty,   ///< At most 60 beats a second.
  };

  class Listener {
   public:
    virtual ~Listener() = default;
    /// seconds of the wall clock. Must not join or leave within the call.
    virtual void beat(double seconds) = 0;
  };

  explicit Metronome(const Clocks& clocks);
  /// The one that the program's items listen to.
  static Metronome& shared();

  /// Joining twice only changes the rate. The listener leaves before it dies.
  void join(Listener* listener, Rate rate);
  void leave(Listener* listener);

  [[nodiscard]] double seconds() const;
  [[nodiscard]] bool isRunning() const { return timer_.isActive(); }
  [[nodiscard]] int intervalMillis() const { return intervalMillis_; }
  [[nodiscard]] int listenerCount() const { return static_cast<int>(seats_.size()); }

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  struct Seat {
    Listener* listener;
    Rate rate;
  };
  void retune();

  const Clocks& clocks_;
  std::vector<Seat> seats_;
  QBasicTimer timer_;
  int intervalMillis_ = 0;
  bool offBeat_ = false;
};

}  // namespace quillmere
