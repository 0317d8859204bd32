// Windows on screens that are smaller than they would like.
#include "windows/WindowFit.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>

namespace quillmere {
namespace {

const WindowSizes wanted{QSize(1120, 720), QSize(1040, 660)};

TEST(WindowFit, WhereThereIsRoomNothingIsTakenAway) {
  EXPECT_EQ(fittingSizes(wanted, QSize(1920, 1080), QMargins(2, 36, 2, 2)), wanted);
  EXPECT_EQ(fittingSizes(wanted, QSize(1124, 758), QMargins(2, 36, 2, 2)), wanted);
}

TEST(WindowFit, NoWindowIsLargerThanTheScreenLessItsFrame) {
  // 1366 by 768 pixels at scale 2.
  const auto small = fittingSizes(wanted, QSize(683, 384), QMargins(2, 36, 2, 2));
  EXPECT_EQ(small.size, QSize(679, 346));
  EXPECT_EQ(small.minimum, QSize(679, 346));
}

TEST(WindowFit, TheLeastSizeGivesWayOnlyWhereItMust) {
  const auto low = fittingSizes(wanted, QSize(1280, 700), QMargins(0, 30, 0, 0));
  EXPECT_EQ(low.size, QSize(1120, 670));
  EXPECT_EQ(low.minimum, QSize(1040, 660));
}

TEST(WindowFit, AScreenThatSaysNothingOfItselfBoundsNothing) {
  EXPECT_EQ(fittingSizes(wanted, QSize(), QMargins()), wanted);
}

TEST(WindowFit, AFrameLargerThanTheScreenLeavesAWindowAllTheSame) {
  EXPECT_EQ(fittingSizes(wanted, QSize(20, 20), QMargins(0, 36, 0, 0)).size.height(), 1);
}

TEST(WindowFit, AWindowIsHeldToItsScreenFromTheStart) {
  QWindow window;
  const auto room = QGuiApplication::primaryScreen()->availableSize();
  window.resize(room * 2);
  window.setMinimumSize(room * 2 - QSize(10, 10));
  keepOnScreen(window);
  EXPECT_LE(window.width(), room.width());
  EXPECT_LE(window.height(), room.height());
  EXPECT_LE(window.minimumWidth(), room.width());
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_LE(window.height(), room.height());
}

TEST(WindowFit, AWindowThatFitsKeepsItsSizes) {
  QWindow window;
  window.resize(300, 200);
  window.setMinimumSize({200, 100});
  keepOnScreen(window);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_EQ(window.size(), QSize(300, 200));
  EXPECT_EQ(window.minimumSize(), QSize(200, 100));
}

}  // namespace
}  // namespace quillmere
