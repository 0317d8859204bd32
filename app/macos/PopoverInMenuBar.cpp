// The window becomes a part of the popover, which follows its size.
#include "app/macos/PopoverInMenuBar.h"

#include <utility>

namespace quillmere {

PopoverInMenuBar::PopoverInMenuBar(std::function<void*()> anchor) : anchor_(std::move(anchor)) {
  popover_.onClosing([this] {
    if (!isHiding_) Q_EMIT takenAway();
  });
  popover_.onClosed([this] {
    if (window_ != nullptr) window_->hide();
  });
}

PopoverInMenuBar::~PopoverInMenuBar() {
  popover_.onClosing({});
  popover_.onClosed({});
}

void PopoverInMenuBar::adopt(QWindow& window) {
  window_ = &window;
  window.setFlags(Qt::FramelessWindowHint);
  connect(&window, &QWindow::widthChanged, this, &PopoverInMenuBar::follow);
  connect(&window, &QWindow::heightChanged, this, &PopoverInMenuBar::follow);
}

void PopoverInMenuBar::show(const PopoverPlace& /*place*/) {
  void* const anchor = anchor_();
  if (window_ == nullptr || anchor == nullptr) return;
  follow();
  popover_.show(anchor);
  enter();
  window_->show();
  window_->requestActivate();
}

void PopoverInMenuBar::enter() {
  if (inside_) return;
  // No sooner than the popover stands: a view that is in no window yet would be given one of the toolkit's own.
  inside_.reset(QWindow::fromWinId(reinterpret_cast<WId>(popover_.content())));
  window_->setParent(inside_.get());
  window_->setPosition(0, 0);
}

void PopoverInMenuBar::hide() {
  isHiding_ = true;
  popover_.close();
  isHiding_ = false;
}

void PopoverInMenuBar::release() {
  // The window has gone already, and with it what lay in the popover.
  window_ = nullptr;
  inside_.reset();
}

void PopoverInMenuBar::follow() {
  if (window_ != nullptr) popover_.setContentSize(window_->width(), window_->height());
}

}  // namespace quillmere
