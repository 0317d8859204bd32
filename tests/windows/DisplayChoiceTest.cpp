// Which display the windows are drawn on.
#include "windows/DisplayChoice.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(DisplayChoice, WithoutAWaylandCompositorTheToolkitChooses) {
  EXPECT_EQ(platformFor({.hasWayland = false, .hasLayerShell = false, .hasXServer = true}), "");
}

TEST(DisplayChoice, ALayerShellIsReasonToStayOnWayland) {
  EXPECT_EQ(platformFor({.hasWayland = true, .hasLayerShell = true, .hasXServer = true}), "wayland");
}

TEST(DisplayChoice, WithoutALayerShellItIsTheSessionsXServerThatCanPlaceAWindow) {
  EXPECT_EQ(platformFor({.hasWayland = true, .hasLayerShell = false, .hasXServer = true}), "xcb;wayland");
}

TEST(DisplayChoice, WithNeitherTheToolkitChooses) {
  EXPECT_EQ(platformFor({.hasWayland = true, .hasLayerShell = false, .hasXServer = false}), "");
}

TEST(DisplayChoice, WhoNamesAPlatformHasTheLastWord) {
  EXPECT_EQ(platformFor({.hasWayland = true, .hasLayerShell = false, .hasXServer = true, .isNamed = true}), "");
  EXPECT_EQ(platformFor({.hasWayland = true, .hasLayerShell = true, .hasXServer = true, .isNamed = true}), "");
}

}  // namespace
}  // namespace quillmere
