// The popover's life: what opens it and everything that closes it.
#include "windows/PopoverController.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTest>
#include <QWindow>
#include <chrono>

#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"
#include "windows/PlacedStage.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

/// A popover with a menu in it, which closes on Escape while it is open.
class Panel : public QWindow {
 public:
  static inline int alive = 0;
  static inline bool menuIsOpen = false;

  Panel() {
    ++alive;
    resize(340, 300);
  }
  ~Panel() override { --alive; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    event->setAccepted(event->key() == Qt::Key_Escape && menuIsOpen);
    if (event->isAccepted()) menuIsOpen = false;
  }
};

/// A popover on the stage of one kind of desktop.
template <typename Stage>
class PopoverOn : public ::testing::Test {
 protected:
  PopoverOn() { Panel::menuIsOpen = false; }

  void toggle() {
    // Longer than the time in which a click on the icon counts as the one that has closed it.
    time.advance(1s);
    popover.toggle({});
  }

  VirtualTime time;
  RecordingLogSink log;
  QWindow* made = nullptr;
  PopoverController popover{time.runtime(log),
                            [this] {
                              auto panel = std::make_unique<Panel>();
                              made = panel.get();
                              return panel;
                            },
                            std::make_unique<Stage>()};
};

class Popover : public PopoverOn<PlacedStage> {
 protected:
  void open() {
    toggle();
    ASSERT_TRUE(QTest::qWaitFor([this] { return QGuiApplication::focusWindow() == made; }));
    ASSERT_TRUE(popover.isShown());
  }
};

TEST_F(Popover, TheIconOpensAndClosesIt) {
  open();
  EXPECT_TRUE(made->isVisible());
  popover.toggle({});
  EXPECT_FALSE(popover.isShown());
  EXPECT_FALSE(made->isVisible());
}

TEST_F(Popover, AClickIntoAnotherWindowOfTheProgramClosesIt) {
  QWindow other;
  other.resize(200, 200);
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
  open();
  other.requestActivate();
  ASSERT_TRUE(QTest::qWaitFor([&other] { return QGuiApplication::focusWindow() == &other; }));
  EXPECT_FALSE(popover.isShown());
}

/// A stage on a display that takes the popover away by itself when anything else is clicked on.
class JealousStage final : public PopoverStage {
 public:
  static inline JealousStage* latest = nullptr;

  JealousStage() { latest = this; }
  void adopt(QWindow& window) override { window_ = &window; }
  void show(const PopoverPlace& /*place*/) override { window_->show(); }
  void hide() override { window_->hide(); }
  [[nodiscard]] bool isShown() const override { return window_ != nullptr && window_->isVisible(); }
  void release() override { window_ = nullptr; }

  void clickElsewhere() {
    Q_EMIT takenAway();
    window_->hide();
  }

 private:
  QWindow* window_ = nullptr;
};

class PopoverThatIsTakenAway : public PopoverOn<JealousStage> {
 protected:
  PopoverThatIsTakenAway() {
    toggle();
    EXPECT_TRUE(popover.isShown());
    JealousStage::latest->clickElsewhere();
    EXPECT_FALSE(popover.isShown());
  }
};

TEST_F(PopoverThatIsTakenAway, StaysClosedForTheClickOnTheIconThatHasTakenItAway) {
  popover.toggle({});
  EXPECT_FALSE(popover.isShown());
}

TEST_F(PopoverThatIsTakenAway, OpensForALaterClickOnTheIcon) {
  time.advance(301ms);
  popover.toggle({});
  EXPECT_TRUE(popover.isShown());
}

/// A stage on a desktop that doesn't give the popover the keyboard.
class DeafStage final : public PopoverStage {
 public:
  void adopt(QWindow& window) override {
    window_ = &window;
    // Without a display only such a window is shown without being given it.
    window.setFlags(Qt::ToolTip);
  }
  void show(const PopoverPlace& /*place*/) override { window_->show(); }
  void hide() override { window_->hide(); }
  [[nodiscard]] bool isShown() const override { return window_ != nullptr && window_->isVisible(); }
  void release() override { window_ = nullptr; }

 private:
  QWindow* window_ = nullptr;
};

class PopoverWithoutKeyboard : public PopoverOn<DeafStage> {
 protected:
  void open() {
    toggle();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(made));
    ASSERT_TRUE(popover.isShown());
  }
};

/// The program's window has the focus now.
void giveFocus(QWindow& window) {
  window.resize(200, 200);
  window.show();
  window.requestActivate();
  ASSERT_TRUE(QTest::qWaitFor([&window] { return QGuiApplication::focusWindow() == &window; }));
}

TEST_F(PopoverWithoutKeyboard, ClosesOnAClickIntoAnotherWindow) {
  open();
  time.advance(2s);
  QWindow other;
  giveFocus(other);
  EXPECT_FALSE(popover.isShown());
}

TEST_F(PopoverWithoutKeyboard, AsksForItWhenItGoesToAWindowThatWasShownJustBefore) {
  open();
  ASSERT_NE(QGuiApplication::focusWindow(), made);
  QWindow other;
  other.show();
  other.requestActivate();
  EXPECT_TRUE(QTest::qWaitFor([this] { return QGuiApplication::focusWindow() == made; }))
      << "the popover was the later wish";
  EXPECT_TRUE(popover.isShown());
  QWindow next;
  giveFocus(next);
  EXPECT_FALSE(popover.isShown()) << "it has had it";
}

TEST_F(Popover, EscapeClosesIt) {
  open();
  QTest::keyClick(made, Qt::Key_Escape);
  EXPECT_FALSE(popover.isShown());
}

TEST_F(Popover, EscapeClosesAnOpenMenuFirst) {
  open();
  Panel::menuIsOpen = true;
  QTest::keyClick(made, Qt::Key_Escape);
  EXPECT_FALSE(Panel::menuIsOpen);
  EXPECT_TRUE(popover.isShown());
  QTest::keyClick(made, Qt::Key_Escape);
  EXPECT_FALSE(popover.isShown());
}

TEST_F(Popover, OtherKeysAreTheWindowsOwn) {
  open();
  QTest::keyClick(made, Qt::Key_Space);
  EXPECT_TRUE(popover.isShown());
}

TEST_F(Popover, AClickOnTheIconThatTakesTheFocusAwayIsOneWishToClose) {
  open();
  QWindow panel;
  panel.show();
  panel.requestActivate();
  ASSERT_TRUE(QTest::qWaitFor([&panel] { return QGuiApplication::focusWindow() == &panel; }));
  ASSERT_FALSE(popover.isShown());
  popover.toggle({});
  EXPECT_FALSE(popover.isShown());
  time.advance(400ms);
  popover.toggle({});
  EXPECT_TRUE(popover.isShown());
}

TEST_F(Popover, ReturnsQuicklyAndIsDroppedAfterAWhile) {
  int drops = 0;
  QObject::connect(&popover, &PopoverController::dropped, &popover, [&drops] { ++drops; });
  open();
  const auto* first = made;
  popover.close();
  time.advance(5s);
  open();
  EXPECT_EQ(made, first);
  popover.close();
  EXPECT_TRUE(popover.isHeld());
  time.advance(30s);
  EXPECT_EQ(Panel::alive, 0);
  EXPECT_FALSE(popover.isHeld());
  EXPECT_EQ(drops, 1);
  // And again from the start.
  open();
  EXPECT_EQ(Panel::alive, 1);
}

TEST_F(Popover, HangsAtTheIcon) {
  time.advance(1s);
  popover.toggle({.icon = QRect(500, 0, 22, 22), .click = std::nullopt});
  EXPECT_EQ(made->position(), QPoint(340, 28));
  // The corner at the icon stays where it is while the content grows.
  made->resize(340, 400);
  EXPECT_EQ(made->position().y(), 28);
}

}  // namespace
}  // namespace quillmere
