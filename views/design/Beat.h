// A heartbeat for QML: time and phases that advance only while the item can be seen.
// Put one into whatever moves by itself and bind to its phases.
#pragma once

#include <QPointer>
#include <QQuickItem>

#include "views/design/Metronome.h"

namespace quillmere {

/// Beats while running is set, the item and its ancestors are visible, and its window is exposed. Where the desktop
/// wants less motion it stands still, at the time nought. [main]
class Beat : public QQuickItem, private Metronome::Listener {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged)
  Q_PROPERTY(Rate rate READ rate WRITE setRate NOTIFY rateChanged)
  Q_PROPERTY(bool beating READ beating NOTIFY beatingChanged)
  Q_PROPERTY(double time READ time NOTIFY timeChanged)
  Q_PROPERTY(double shimmer READ shimmer NOTIFY timeChanged)
  Q_PROPERTY(double pulse READ pulse NOTIFY timeChanged)
  Q_PROPERTY(double haloScale READ haloScale NOTIFY timeChanged)

 public:
  enum Rate {
    Thirty,  ///< At most 30 times a second.
    Sixty,   ///< At most 60 times a second; at most 30 where the processor draws.
  };
  Q_ENUM(Rate)

  explicit Beat(QQuickItem* parent = nullptr);
  ~Beat() override;

  [[nodiscard]] bool running() const { return running_; }
  void setRunning(bool running);
  [[nodiscard]] Rate rate() const { return rate_; }
  void setRate(Rate rate);
  [[nodiscard]] bool beating() const { return beating_; }
  /// Seconds of the wall clock.
  [[nodiscard]] double time() const { return time_; }
  /// The opacity of a shimmer.
  [[nodiscard]] double shimmer() const;
  /// 0 to 1.
  [[nodiscard]] double pulse() const;
  /// The scale of a pulse's halo.
  [[nodiscard]] double haloScale() const;

 Q_SIGNALS:
  void runningChanged();
  void rateChanged();
  void beatingChanged();
  void timeChanged();

 protected:
  void itemChange(ItemChange change, const ItemChangeData& data) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void beat(double seconds) override;
  void watch(QQuickWindow* window);
  void standStill();
  void decide();
  void join();

  QPointer<QQuickWindow> watched_;
  double time_;
  Rate rate_ = Thirty;
  bool running_ = false;
  bool beating_ = false;
};

}  // namespace quillmere
