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

const ScreenSpace withPanel{screen, QRect(0, 24, 1920, 1056)};
const ScreenSpace bare{screen, screen};
const QPoint away(900, 500);

TEST(PanelAnchor, IsThePointerOverAPanelBeforeWhatThePanelSays) {
  EXPECT_EQ(panelAnchor(QPoint(1500, 10), QPoint(3, 3), {withPanel}), QRect(1500, 10, 1, 1));
}

TEST(PanelAnchor, IsWhatThePanelSaysWhereThePointerIsElsewhere) {
  EXPECT_EQ(panelAnchor(away, QPoint(1600, 12), {withPanel}), QRect(1600, 12, 1, 1));
}

TEST(PanelAnchor, APlaceAwayFromEveryPanelSaysNothing) {
  EXPECT_FALSE(panelAnchor(away, QPoint(1600, 400), {withPanel}).has_value());
  EXPECT_FALSE(panelAnchor(away, QPoint(1600, 400), {bare}).has_value());
  EXPECT_FALSE(panelAnchor(away, std::nullopt, {bare}).has_value());
  EXPECT_FALSE(panelAnchor(QPoint(-5, -5), QPoint(5000, 12), {bare}).has_value());
}

TEST(PanelAnchor, WhereNoPanelIsKnownAClickAtAnEdgeIsInTheMiddleOfOne) {
  EXPECT_EQ(panelAnchor(away, QPoint(1600, 15), {bare}), QRect(1600, 0, 1, 30));
  EXPECT_EQ(panelAnchor(away, QPoint(1600, 1059), {bare}), QRect(1600, 1040, 1, 40));
  // No panel is as thin as this, nor as thick as that.
  EXPECT_EQ(panelAnchor(away, QPoint(1600, 2), {bare}), QRect(1600, 0, 1, 24));
  EXPECT_EQ(panelAnchor(away, QPoint(1600, 60), {bare}), QRect(1600, 0, 1, 64));
}

TEST(EdgePlaceOf, APointerAtAnEdgeHangsThePopoverThereCentredOnIt) {
  using Edge = EdgePlace::Edge;
  const QSize whole = screen.size();
  EXPECT_EQ(edgePlace(QPoint(1000, 10), size, whole), (EdgePlace{Edge::top, 830}));
  EXPECT_EQ(edgePlace(QPoint(1000, 1070), size, whole), (EdgePlace{Edge::bottom, 830}));
  EXPECT_EQ(edgePlace(QPoint(10, 500), size, whole), (EdgePlace{Edge::left, 300}));
  EXPECT_EQ(edgePlace(QPoint(1910, 500), size, whole), (EdgePlace{Edge::right, 300}));
}

TEST(EdgePlaceOf, StaysOnTheScreenNearACorner) {
  using Edge = EdgePlace::Edge;
  EXPECT_EQ(edgePlace(QPoint(1915, 10), size, screen.size()), (EdgePlace{Edge::top, 1920 - 6 - 340}));
  EXPECT_EQ(edgePlace(QPoint(2, 1075), size, screen.size()), (EdgePlace{Edge::bottom, 6}));
}

TEST(EdgePlaceOf, WithoutAPointerAtAnEdgeItIsTheCornerOfTrays) {
  EXPECT_EQ(edgePlace(std::nullopt, size, screen.size()), EdgePlace());
  EXPECT_EQ(edgePlace(away, size, screen.size()), EdgePlace());
  EXPECT_EQ(EdgePlace().edge, EdgePlace::Edge::top);
  EXPECT_FALSE(EdgePlace().along.has_value());
}

}  // namespace
}  // namespace quillmere
