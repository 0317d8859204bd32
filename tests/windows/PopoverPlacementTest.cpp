// The popover's corner on screens with panels above, below and nowhere.
#include "windows/PopoverPlacement.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

const QRect screen(0, 0, 1920, 1080);
const QSize size(340, 400);

TEST(PopoverPlacement, HangsBelowAnIconAtTheTop) {
  EXPECT_EQ(popoverPosition(QRect(1000, 0, 24, 24), size, screen, QRect(0, 24, 1920, 1056)), QPoint(841, 30));
}

TEST(PopoverPlacement, StandsAboveAnIconAtTheBottom) {
  EXPECT_EQ(popoverPosition(QRect(1000, 1056, 24, 24), size, screen, QRect(0, 0, 1920, 1056)), QPoint(841, 650));
}

TEST(PopoverPlacement, StaysOnTheScreenNearAnEdge) {
  EXPECT_EQ(popoverPosition(QRect(1900, 0, 20, 24), size, screen, QRect(0, 24, 1920, 1056)).x(), 1920 - 6 - 340);
}

TEST(PopoverPlacement, GoesToThePanelsCornerWhereTheIconIsUnknown) {
  EXPECT_EQ(popoverPosition({}, size, screen, QRect(0, 24, 1920, 1056)), QPoint(1574, 30));
  EXPECT_EQ(popoverPosition({}, size, screen, QRect(0, 0, 1920, 1040)), QPoint(1574, 634));
}

TEST(PopoverPlacement, AScreenSmallerThanThePopoverKeepsItsTopLeftVisible) {
  EXPECT_EQ(popoverPosition({}, size, QRect(0, 0, 300, 200), QRect(0, 0, 300, 200)), QPoint(6, 6));
}

TEST(PopoverPlacement, SecondScreensHaveTheirOwnOrigin) {
  EXPECT_EQ(popoverPosition(QRect(2900, 0, 24, 24), size, QRect(1920, 0, 1920, 1080), QRect(1920, 24, 1920, 1056)),
            QPoint(2741, 30));
}

}  // namespace
}  // namespace quillmere
