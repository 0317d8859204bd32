// The slider's hands in real windows.
#include "views/design/SliderHandle.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QQuickWindow>
#include <QTest>
#include <QWheelEvent>
#include <memory>
#include <vector>

namespace quillmere {
namespace {

struct Desk {
  Desk() : handle(window.contentItem()) {
    window.resize(200, 40);
    handle.setSize({200, 20});
    handle.setPosition(0.5);
    QObject::connect(&handle, &SliderHandle::moved, &handle, [this](double value) {
      last = value;
      ++moves;
    });
  }

  QQuickWindow window;
  SliderHandle handle;
  double last = -1;
  int moves = 0;
};

void scroll(QQuickWindow& window, QPointF place, int angle) {
  QWheelEvent event(place, window.mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&window, &event);
}

TEST(SliderHandle, OfTwoInDifferentWindowsOnlyTheOneInTheEventsWindowReacts) {
  Desk first;
  Desk second;
  first.window.show();
  second.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&first.window));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&second.window));
  scroll(second.window, QPointF(100, 10), 120);
  EXPECT_EQ(first.moves, 0);
  EXPECT_EQ(second.moves, 1);
  EXPECT_NEAR(second.last, 0.52, 1e-9);
}

/// The pointer comes to a place of the window.
void point(QQuickWindow& window, QPoint place) {
  QTest::mouseMove(&window, place + QPoint(1, 1));
  QTest::mouseMove(&window, place);
}

TEST(SliderHandle, IsTheHoveredOneAsLongAsThePointerLiesOverIt) {
  auto desk = std::make_unique<Desk>();
  desk->window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&desk->window));
  point(desk->window, {100, 10});
  ASSERT_TRUE(QTest::qWaitFor([&desk] { return SliderHandle::hovered() == &desk->handle; }));
  point(desk->window, {100, 35});
  EXPECT_TRUE(QTest::qWaitFor([] { return SliderHandle::hovered() == nullptr; }));
  point(desk->window, {100, 10});
  ASSERT_TRUE(QTest::qWaitFor([&desk] { return SliderHandle::hovered() == &desk->handle; }));
  desk.reset();
  EXPECT_EQ(SliderHandle::hovered(), nullptr);
}

TEST(SliderHandle, ADistanceThatSomebodyElseHasSeenIsOneStepWhateverItsSize) {
  Desk desk;
  EXPECT_TRUE(desk.handle.scrollBy(0.1));
  EXPECT_NEAR(desk.last, 0.52, 1e-9);
  EXPECT_TRUE(desk.handle.scrollBy(-40));
  EXPECT_NEAR(desk.last, 0.48, 1e-9);
  EXPECT_TRUE(desk.handle.scrollBy(0));
  EXPECT_NEAR(desk.last, 0.48, 1e-9) << "no distance counts as downwards";
}

TEST(SliderHandle, ADistanceThatSomebodyElseHasSeenIsHandedOnInFull) {
  Desk desk;
  desk.handle.setScrollRule(SliderHandle::Forward);
  std::vector<double> told;
  QObject::connect(&desk.handle, &SliderHandle::scrollDelta, [&told](double delta) { told.push_back(delta); });
  EXPECT_TRUE(desk.handle.scrollBy(0.3));
  EXPECT_TRUE(desk.handle.scrollBy(-7.25));
  EXPECT_EQ(told, (std::vector<double>{0.3, -7.25}));
  EXPECT_EQ(desk.moves, 0);
}

TEST(SliderHandle, ADistanceGoesOnToWhatLiesBeneathWhereScrollsAreNotForIt) {
  Desk desk;
  desk.handle.setScrollRule(SliderHandle::PassOn);
  EXPECT_FALSE(desk.handle.scrollBy(3));
  EXPECT_EQ(desk.moves, 0);
}

TEST(SliderHandle, DoesNotReactToAWheelBesideIt) {
  Desk desk;
  desk.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&desk.window));
  scroll(desk.window, QPointF(100, 30), 120);
  EXPECT_EQ(desk.moves, 0);
}

TEST(SliderHandle, AScrollOfNoughtLowersTheValue) {
  Desk desk;
  desk.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&desk.window));
  scroll(desk.window, QPointF(100, 10), 0);
  EXPECT_EQ(desk.moves, 1);
  EXPECT_NEAR(desk.last, 0.48, 1e-9);
}

TEST(SliderHandle, AStepOfAKeyIsItsOwnAndOfAWheelAtLeastThat) {
  Desk desk;
  desk.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&desk.window));
  EXPECT_EQ(desk.handle.property("stepSize").toDouble(), 0.02);
  desk.handle.setStepSize(0.25);
  desk.handle.increase();
  EXPECT_NEAR(desk.last, 0.75, 1e-9);
  scroll(desk.window, QPointF(100, 10), 120);
  EXPECT_NEAR(desk.last, 0.75, 1e-9);
  desk.handle.setStepSize(0.001);
  desk.handle.decrease();
  EXPECT_NEAR(desk.last, 0.499, 1e-9);
  scroll(desk.window, QPointF(100, 10), -120);
  EXPECT_NEAR(desk.last, 0.48, 1e-9);
}

TEST(SliderHandle, AWishBeyondTheRangeIsLimitedAndStillTold) {
  Desk desk;
  desk.handle.setPosition(1);
  desk.handle.increase();
  EXPECT_EQ(desk.moves, 1);
  EXPECT_EQ(desk.last, 1);
  desk.handle.requestValue(-4);
  EXPECT_EQ(desk.last, 0);
}

TEST(SliderHandle, AWishDoesNotMoveThePositionByItself) {
  Desk desk;
  desk.handle.requestValue(0.9);
  EXPECT_EQ(desk.handle.position(), 0.5);
}

TEST(SliderHandle, TellsAssistiveTechnologyWhenItsValueChanges) {
  Desk desk;
  int told = 0;
  QObject::connect(&desk.handle, &SliderHandle::valueChanged, &desk.handle, [&told] { ++told; });
  desk.handle.setPosition(0.6);
  desk.handle.setPosition(0.6);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(desk.handle.property("value").toDouble(), 0.6);
}

}  // namespace
}  // namespace quillmere
