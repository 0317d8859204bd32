// One window of the program: made when it is shown, kept a while when it is hidden, then dropped with all it holds.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <chrono>
#include <functional>
#include <memory>

#include "runtime/Runtime.h"
#include "windows/FrameProbe.h"
#include "windows/WindowSight.h"

namespace quillmere {

using WindowFactory = std::function<std::unique_ptr<QWindow>()>;
/// Whether a window that was asked for while it showed is seen; empty where it is, for all that is known.
using SightTest = std::function<Sight(QWindow& window)>;

/// [main] throughout.
class Scene final : public QObject {
  Q_OBJECT

 public:
  /// How long the desktop may take to bring a window to the front that it was asked for.
  static constexpr Duration patience = std::chrono::milliseconds(500);

  /// @param keepHidden  how long a hidden window is kept for a quick return
  Scene(const Runtime& runtime, WindowFactory factory, Duration keepHidden, SightTest sight = {});
  ~Scene() override;

  /// The window, made if need be and not yet shown.
  QWindow& prepare();
  /// Shows the window and asks for the focus. One that shows where nobody sees it, on another workspace, and that the
  /// desktop leaves there because it knows no reason to do otherwise, is fetched: hidden and shown again, without
  /// anybody's being told, it is a new one to the desktop.
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
  void bringForward();
  /// Looks after a moment whether the desktop has done what it was asked.
  void lookForIt();
  void look(bool isLast);
  void stopLooking();
  void fetch();

  Runtime runtime_;
  WindowFactory factory_;
  Duration keepHidden_;
  SightTest sight_;
  TimerID dropTimer_ = 0;
  TimerID lookTimer_ = 0;
  std::unique_ptr<FrameProbe> probe_;
  /// Whether the display has asked for a picture since the window was shown.
  bool hasBeenSeen_ = false;
  std::function<void()> dropped_;
  std::unique_ptr<QWindow> window_;
};

}  // namespace quillmere
