// Waits until the screen has a tray of the old kind, which embeds windows.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace quillmere {

/// Finds nothing on a display that is not X11. [main]
class OldTrayWatch final : public QObject, public QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  OldTrayWatch();
  ~OldTrayWatch() override;

  /// Looks now, and goes on watching until a tray is there; then available() is emitted, once.
  void start();
  [[nodiscard]] bool isAvailable() const { return isAvailable_; }
  /// Whether a tray could come on this display.
  [[nodiscard]] static bool isPossible();

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 Q_SIGNALS:
  void available();

 private:
  void look();
  [[nodiscard]] bool isThere() const;

  bool isAvailable_ = false;
};

}  // namespace quillmere
