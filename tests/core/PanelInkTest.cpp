// Which ink a mark gets, and what an outline adds to it.
#include "core/PanelInk.h"

#include <gtest/gtest.h>

#include <array>

namespace quillmere {
namespace {

TEST(PanelInk, WhatTheDesktopPrefersIsLikelyButNotCertainSoTheMarkIsOutlined) {
  EXPECT_EQ(panelInk(true, "KDE"), Ink::lightOutlined);
  EXPECT_EQ(panelInk(false, "KDE"), Ink::darkOutlined);
}

TEST(PanelInk, ADesktopThatSaysNothingGetsALightOutlinedMark) {
  for (const auto* desktops : {"XFCE", "sway", "LXQt", ""}) {
    EXPECT_EQ(panelInk(std::nullopt, desktops), Ink::lightOutlined) << desktops;
  }
}

TEST(PanelInk, ABarThatIsAlwaysDarkGetsPlainLightInk) {
  for (const auto* desktops : {"GNOME", "ubuntu:GNOME", "Unity:Unity7:ubuntu", "Pantheon"}) {
    EXPECT_EQ(panelInk(false, desktops), Ink::light) << desktops;
    EXPECT_EQ(panelInk(std::nullopt, desktops), Ink::light) << desktops;
  }
  EXPECT_EQ(panelInk(false, "GNOME-Flashback"), Ink::darkOutlined);
}

TEST(PanelInk, MenusGoWithTheWindowsAndAreOutlinedWhereNobodySaysWhatThoseAre) {
  EXPECT_EQ(menuInk(true), Ink::light);
  EXPECT_EQ(menuInk(false), Ink::dark);
  EXPECT_EQ(menuInk(std::nullopt), Ink::darkOutlined);
}

TEST(PanelInk, AnOutlineIsOfTheOtherInk) {
  EXPECT_EQ(coloursOf(Ink::lightOutlined).fill, coloursOf(Ink::light).fill);
  EXPECT_EQ(coloursOf(Ink::lightOutlined).outline, coloursOf(Ink::dark).fill);
  EXPECT_EQ(coloursOf(Ink::darkOutlined).outline, coloursOf(Ink::light).fill);
  EXPECT_FALSE(coloursOf(Ink::light).outline.has_value());
}

/// One opaque pixel in the middle of five by five.
constexpr std::array<std::uint8_t, 25> dot{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

TEST(PanelInk, APlainMarkIsItsMaskInOneColour) {
  const auto pixels = inked(dot, 5, Ink::dark, 1);
  for (std::size_t at = 0; at < pixels.size(); ++at) {
    EXPECT_EQ(pixels[at], at == 12 ? 0xFF242424U : 0x00242424U) << at;
  }
}

TEST(PanelInk, AnOutlineSurroundsTheMarkAndLeavesItAsItIs) {
  const auto pixels = inked(dot, 5, Ink::lightOutlined, 1);
  EXPECT_EQ(pixels[12], 0xFFF2F2F2U);
  for (const std::size_t beside : {7U, 11U, 13U, 17U}) EXPECT_EQ(pixels[beside], 0xE6242424U) << beside;
  for (const std::size_t corner : {0U, 4U, 20U, 24U}) EXPECT_EQ(pixels[corner], 0x00242424U) << corner;
}

TEST(PanelInk, AnOutlineEndsAtThePicturesEdge) {
  const std::array<std::uint8_t, 4> corner{255, 0, 0, 0};
  const auto pixels = inked(corner, 2, Ink::darkOutlined, 1);
  EXPECT_EQ(pixels.size(), 4U);
  EXPECT_EQ(pixels[0], 0xFF242424U);
  EXPECT_EQ(pixels[1], 0xE6F2F2F2U);
}

TEST(PanelInk, AnOutlineGrowsWithTheIconAndIsNeverThinnerThanAPixel) {
  EXPECT_EQ(outlineWidth(16), 1);
  EXPECT_EQ(outlineWidth(22), 1);
  EXPECT_EQ(outlineWidth(44), 2);
}

}  // namespace
}  // namespace quillmere
