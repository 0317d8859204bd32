// One window of the program: made when it is shown, kept a while when it is hidden, then dropped with all it holds.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <functional>
#include <memory>

#include "runtime/Runtime.h"

namespace quillmere {

using WindowFactory = std::function<std::unique_ptr<QWindow>()>;

/// [main] throughout.
class Scene final : public QObject {
  Q_OBJECT

 public:
  /// @param keepHidden  how long a hidden window is kept for a quick return
  Scene(const Runtime& runtime, WindowFactory factory, Duration keepHidden);
  ~Scene() override;

  /// The window, made if need be and not yet shown.
  QWindow& prepare();
  /// Shows the window and asks for the focus.
  void show();
  void hide();
  [[nodiscard]] bool isVisible() const;
  /// The window if there is one at the moment.
  [[nodiscard]] QWindow* window() const { return window_.get(); }
  /// What was released can go back to the system; called after a window was dropped.
  void onDropped(std::function<void()> observer) { dropped_ = std::move(observer); }

 Q_SIGNALS:
  void becameActive();
  void lostFocus();
  /// The user or the window manager closes the window; it still counts as visible.
  void willClose();
  void shown();
  void hidden();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void scheduleDrop();
  void keep();

  Runtime runtime_;
  WindowFactory factory_;
  Duration keepHidden_;
  TimerID dropTimer_ = 0;
  std::function<void()> dropped_;
  std::unique_ptr<QWindow> window_;
};

}  // namespace quillmere
