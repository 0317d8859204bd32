// Follows the window from screen to screen.
#include "windows/WindowFit.h"

#include <QEvent>
#include <QScreen>
#include <QWindow>

namespace quillmere {

namespace {

/// What a title bar takes as a rule: a window has to fit before anybody tells how large its frame is.
constexpr QMargins likelyFrame(2, 36, 2, 2);

class Fit final : public QObject {
 public:
  explicit Fit(QWindow& window) : QObject(&window), window_(window), wanted_{window.size(), window.minimumSize()} {
    window.installEventFilter(this);
    connect(&window, &QWindow::screenChanged, this, [this] { follow(); });
    follow();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The frame is known once the window shows.
    if (event->type() == QEvent::Show || event->type() == QEvent::Expose) apply(false);
    return QObject::eventFilter(watched, event);
  }

 private:
  void follow() {
    disconnect(change_);
    if (auto* screen = window_.screen()) {
      change_ = connect(screen, &QScreen::availableGeometryChanged, this, [this] { apply(true); });
    }
    apply(true);
  }

  /// A larger screen may ask for more again. A frame that takes less than was thought is no reason to: the desktop has
  /// placed the window as it was, and it would grow over the edge.
  void apply(bool mayAskForMore) {
    const auto* screen = window_.screen();
    if (screen == nullptr) return;
    const auto told = window_.frameMargins();
    // Of a screen and a frame that are not whole in these pixels, both were rounded.
    const int lost = screen->devicePixelRatio() > 1 ? 1 : 0;
    const auto fitting =
        fittingSizes({window_.isVisible() ? window_.size() : wanted_.size, wanted_.minimum}, screen->availableSize(),
                     (told.isNull() ? likelyFrame : told) + QMargins(lost, lost, lost, lost));
    window_.setMinimumSize(mayAskForMore ? fitting.minimum : fitting.minimum.boundedTo(window_.minimumSize()));
    // What the desktop has made as large as the screen stays so.
    if ((window_.windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen)) != 0) return;
    if (fitting.size != window_.size()) window_.resize(fitting.size);
  }

  QWindow& window_;
  const WindowSizes wanted_;
  QMetaObject::Connection change_;
};

}  // namespace

WindowSizes fittingSizes(const WindowSizes& wanted, QSize available, const QMargins& frame) {
  // A screen that says nothing of itself bounds nothing.
  if (available.isEmpty()) return wanted;
  const auto room = available.shrunkBy(frame).expandedTo({1, 1});
  return {wanted.size.boundedTo(room), wanted.minimum.boundedTo(room)};
}

void keepOnScreen(QWindow& window) { new Fit(window); }

}  // namespace quillmere
