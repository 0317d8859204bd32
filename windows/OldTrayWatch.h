// Waits until the desktop offers a place for a status item: a watcher on the bus, or an old tray on the screen.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>

class QDBusServiceWatcher;

namespace quillmere {

/// Qt looks for the bus's watcher once in the life of a process, when the first status item is made. So nothing of it
/// is touched before there is something to find. [main]
class TrayWatch final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  TrayWatch();
  ~TrayWatch() override;

  /// Looks now, and goes on watching until a tray is there; then available() is emitted, once.
  void start();
  [[nodiscard]] bool isAvailable() const { return isAvailable_; }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 Q_SIGNALS:
  void available();

 private Q_SLOTS:
  void look();

 private:
  [[nodiscard]] bool statusItemHostIsThere() const;
  [[nodiscard]] bool oldTrayIsThere() const;

  bool isAvailable_ = false;
  QDBusServiceWatcher* busWatcher_ = nullptr;
};

}  // namespace quillmere
