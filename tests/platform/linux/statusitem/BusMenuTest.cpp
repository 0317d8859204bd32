// The menu's tree and its changes, without a bus.
#include "platform/linux/statusitem/BusMenu.h"

#include <gtest/gtest.h>

#include <limits>

#include "MenuSamples.h"
#include "platform/linux/statusitem/ColorScheme.h"

namespace quillmere::statusitem {
namespace {

using bus::Variant;
using samples::action;
using samples::choice;
using samples::printed;
using samples::submenu;

class BusMenuOf : public ::testing::Test {
 protected:
  BusMenuOf() { menu_.replace(samples::menu()); }

  MenuChange changeTo(std::vector<StatusMenuItem> items) { return menu_.replace(std::move(items)); }
  std::string labelOf(const std::string& title) {
    BusMenu menu;
    menu.replace({action(1, title)});
    return printed(menu.property(1, "label"));
  }

  BusMenu menu_;
};

TEST_F(BusMenuOf, TheLayoutIsTheTreeInOrder) {
  EXPECT_EQ(printed(menu_.layout(0, -1, {"label"})),
            "(2, (0, {}, [<(1, {'label': <'Open Window'>}, @av [])>, <(2, @a{sv} {}, @av [])>, "
            "<(3, {'label': <'Engage Whisper Mode'>}, @av [])>, "
            "<(4, {'label': <'Sleep Timer'>}, [<(5, {'label': <'15 minutes'>}, @av [])>, "
            "<(6, {'label': <'30 minutes'>}, @av [])>])>, "
            "<(7, {'label': <'Profiles'>}, [<(8, {'label': <'Morning'>}, @av [])>, "
            "<(9, {'label': <'Rock & Roll__2'>}, @av [])>])>, <(10, {'label': <'Quit'>}, @av [])>]))");
}

TEST_F(BusMenuOf, TheDepthCutsTheTree) {
  EXPECT_EQ(printed(menu_.layout(4, 0, {"label"})), "(2, (4, {'label': <'Sleep Timer'>}, []))");
  EXPECT_EQ(printed(menu_.layout(4, 1, {"enabled"})),
            "(2, (4, {'enabled': <true>}, [<(5, {'enabled': <true>}, @av [])>, <(6, {'enabled': <true>}, @av [])>]))");
  EXPECT_EQ(printed(menu_.layout(0, 1, {"label"})).find("Morning"), std::string::npos);
  for (const int nonsense : {-7, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(printed(menu_.layout(0, nonsense, {})), printed(menu_.layout(0, -1, {}))) << nonsense;
  }
}

TEST_F(BusMenuOf, AnUnknownEntryHasNoLayoutAndNoProperty) {
  EXPECT_FALSE(menu_.layout(99, -1, {}));
  EXPECT_FALSE(menu_.layout(-1, -1, {}));
  EXPECT_FALSE(menu_.property(99, "label"));
  EXPECT_FALSE(menu_.property(1, "colour"));
  EXPECT_EQ(printed(menu_.groupProperties({99, 10, -4}, {"label"})), "([(10, {'label': <'Quit'>})],)");
}

TEST_F(BusMenuOf, NoIdsAskForEveryEntry) {
  const auto all = menu_.groupProperties({}, {"label"});
  const Variant list(g_variant_get_child_value(all.get(), 0));
  EXPECT_EQ(g_variant_n_children(list.get()), 11U) << "ten entries and the menu itself";
}

TEST_F(BusMenuOf, EveryKindOfEntryHasItsProperties) {
  EXPECT_EQ(printed(menu_.property(0, "children-display")), "'submenu'");
  EXPECT_EQ(printed(menu_.property(2, "type")), "'separator'");
  EXPECT_FALSE(menu_.property(2, "label"));
  EXPECT_EQ(printed(menu_.property(4, "children-display")), "'submenu'");
  EXPECT_EQ(printed(menu_.property(1, "shortcut")), "[['Control', '0']]");
  EXPECT_FALSE(menu_.property(1, "toggle-type"));
  EXPECT_EQ(printed(menu_.property(8, "toggle-type")), "'checkmark'");
  EXPECT_EQ(printed(menu_.property(8, "toggle-state")), "0");
  EXPECT_EQ(printed(menu_.property(9, "toggle-state")), "1");
}

TEST_F(BusMenuOf, KeysAreNamedAsHostsReadThem) {
  const auto nameOf = [](const std::string& key) {
    BusMenu menu;
    auto item = action(1, "Quit");
    item.key = key;
    menu.replace({item});
    return printed(menu.property(1, "shortcut"));
  };
  EXPECT_EQ(nameOf("q"), "[['Control', 'Q']]");
  EXPECT_EQ(nameOf(","), "[['Control', ',']]");
  EXPECT_EQ(nameOf("+"), "[['Control', 'plus']]");
  EXPECT_EQ(nameOf("-"), "[['Control', 'minus']]");
}

TEST_F(BusMenuOf, ATitleReadsAsItWasWritten) {
  EXPECT_EQ(labelOf("R&B"), "'R&B'");
  EXPECT_EQ(labelOf("late_night__mix_"), "'late__night____mix__'");
  EXPECT_EQ(labelOf("broken \xFF name"), "'broken \xEF\xBF\xBD name'");
  EXPECT_EQ(labelOf(""), "''");
}

TEST_F(BusMenuOf, TheWhisperMarkIsAPicture) {
  const auto picture = menu_.property(3, "icon-data");
  ASSERT_TRUE(bus::isOfType(picture.get(), "ay"));
  gsize size = 0;
  const auto* bytes = static_cast<const char*>(g_variant_get_fixed_array(picture.get(), &size, 1));
  ASSERT_GT(size, 8U);
  EXPECT_EQ(std::string(bytes + 1, 3), "PNG");
  EXPECT_FALSE(menu_.property(1, "icon-data"));
}

TEST_F(BusMenuOf, AnEmptySubmenuIsNotEnabled) {
  const auto change = changeTo({submenu(7, "Profiles", {})});
  EXPECT_EQ(printed(menu_.property(7, "enabled")), "false");
  EXPECT_EQ(change.parents, (std::vector{0, 7}));
  ASSERT_EQ(change.properties.size(), 1U);
  EXPECT_TRUE(change.properties[0].changed.contains("enabled"));
}

TEST_F(BusMenuOf, OnlyEnabledActionsCanBeChosen) {
  auto items = samples::menu();
  items[5].isEnabled = false;
  changeTo(items);
  EXPECT_TRUE(menu_.canBeChosen(1));
  EXPECT_TRUE(menu_.canBeChosen(9));
  for (const int id : {0, 2, 4, 10, 99, -1}) EXPECT_FALSE(menu_.canBeChosen(id)) << id;
}

TEST_F(BusMenuOf, TheSameMenuAgainIsNoChange) {
  const auto revision = menu_.revision();
  EXPECT_TRUE(changeTo(samples::menu()).isEmpty());
  EXPECT_EQ(menu_.revision(), revision);
}

TEST_F(BusMenuOf, ATitleIsAPropertyAndNoNewLayout) {
  const auto revision = menu_.revision();
  auto items = samples::menu();
  items[3].title = "Sleep Timer · 12:34";
  const auto change = changeTo(items);
  EXPECT_TRUE(change.parents.empty());
  EXPECT_EQ(menu_.revision(), revision);
  EXPECT_EQ(printed(change.propertiesUpdated()), "([(4, {'label': <'Sleep Timer · 12:34'>})], [])");
}

TEST_F(BusMenuOf, AMarkThatMovesIsTwoProperties) {
  auto items = samples::menu();
  items[4].children[0].isChecked = true;
  items[4].children[1].isChecked = false;
  const auto change = changeTo(items);
  EXPECT_TRUE(change.parents.empty());
  EXPECT_EQ(printed(change.propertiesUpdated()), "([(8, {'toggle-state': <1>}), (9, {'toggle-state': <0>})], [])");
}

TEST_F(BusMenuOf, WhatIsNoLongerThereIsTakenBack) {
  auto items = samples::menu();
  items[0].key.clear();
  items[4].children[0].isChecked.reset();
  const auto change = changeTo(items);
  EXPECT_TRUE(change.parents.empty());
  EXPECT_EQ(printed(change.propertiesUpdated()), "([], [(1, ['shortcut']), (8, ['toggle-state', 'toggle-type'])])");
}

TEST_F(BusMenuOf, AListThatChangesIsALayoutOfItsOwn) {
  const auto revision = menu_.revision();
  auto items = samples::menu();
  items[4].children.push_back(choice(11, "Evening", false));
  const auto change = changeTo(items);
  EXPECT_EQ(change.parents, std::vector{7});
  EXPECT_TRUE(change.properties.empty()) << "a new entry comes with the layout";
  EXPECT_EQ(menu_.revision(), revision + 1);
}

TEST_F(BusMenuOf, ListsThatChangeTogetherAreToldOneByOne) {
  auto items = samples::menu();
  items[3].children = {action(12, "Cancel sleep timer")};
  items[4].children.pop_back();
  items.pop_back();
  EXPECT_EQ(changeTo(items).parents, (std::vector{0, 4, 7}));
}

TEST_F(BusMenuOf, AnotherOrderIsAnotherLayout) {
  auto items = samples::menu();
  std::swap(items[4].children[0], items[4].children[1]);
  const auto change = changeTo(items);
  EXPECT_EQ(change.parents, std::vector{7});
  EXPECT_TRUE(change.properties.empty());
}

TEST_F(BusMenuOf, AnEntryThatBecomesASubmenuIsAnotherLayoutOfItsParent) {
  auto items = samples::menu();
  items[5] = submenu(10, "Quit", {action(13, "Now")});
  EXPECT_EQ(changeTo(items).parents, std::vector{0});
}

TEST_F(BusMenuOf, TheInkChangesTheMarkAlone) {
  const auto dark = printed(menu_.property(3, "icon-data"));
  const auto change = menu_.setInk(Ink::light);
  ASSERT_EQ(change.properties.size(), 1U);
  EXPECT_EQ(change.properties[0].id, 3);
  EXPECT_EQ(change.properties[0].changed.size(), 1U);
  EXPECT_NE(printed(menu_.property(3, "icon-data")), dark);
  EXPECT_TRUE(menu_.setInk(Ink::light).isEmpty());
}

TEST_F(BusMenuOf, ALineThatWasGivenAMarkHasNoneToChange) {
  auto line = samples::separator(2);
  line.icon = StatusMenuIcon::whisper;
  menu_.replace({line});
  const auto change = menu_.setInk(Ink::light);
  EXPECT_TRUE(change.isEmpty());
  EXPECT_STREQ(g_variant_get_type_string(change.propertiesUpdated().get()), "(a(ia{sv})a(ias))");
}

TEST(ColorScheme, OnlyDarkAndLightAreAWord) {
  const auto read = [](GVariant* value) { return prefersDark(bus::owned(value).get()); };
  EXPECT_EQ(read(g_variant_new_uint32(1)), std::optional(true));
  EXPECT_EQ(read(g_variant_new_uint32(2)), std::optional(false));
  EXPECT_EQ(read(g_variant_new_variant(g_variant_new_variant(g_variant_new_uint32(2)))), std::optional(false));
  EXPECT_EQ(read(g_variant_new_uint32(0)), std::nullopt);
  EXPECT_EQ(read(g_variant_new_string("dark")), std::nullopt);
  EXPECT_EQ(prefersDark(nullptr), std::nullopt);
}

TEST(PanelIcon, EverySizeIsASquareWithAirAroundTheDrawing) {
  std::vector<int> sizes;
  for (const auto& mask : panelIconMasks()) {
    sizes.push_back(mask.size);
    const auto size = static_cast<std::size_t>(mask.size);
    ASSERT_EQ(mask.alpha.size(), size * size);
    const auto at = [&](std::size_t x, std::size_t y) { return mask.alpha[y * size + x]; };
    int opaque = 0;
    for (std::size_t index = 0; index < size; ++index) {
      EXPECT_EQ(at(index, 0) + at(index, size - 1) + at(0, index) + at(size - 1, index), 0) << mask.size;
      for (std::size_t other = 0; other < size; ++other) opaque += at(index, other) == 255 ? 1 : 0;
    }
    EXPECT_GT(opaque, mask.size) << mask.size;
  }
  EXPECT_EQ(sizes, (std::vector{16, 22, 24, 32, 44, 48, 64}));
}

/// Of the icon at the size that most panels ask for: alpha, red, green, blue for each pixel.
std::vector<std::uint8_t> pixelsOfTheUsualSize(Ink ink) {
  const auto pixmaps = iconPixmaps(ink);
  EXPECT_EQ(g_variant_n_children(pixmaps.get()), panelIconMasks().size());
  gint32 width = 0;
  gint32 height = 0;
  GVariant* pixels = nullptr;
  g_variant_get_child(pixmaps.get(), 1, "(ii@ay)", &width, &height, &pixels);
  const Variant owner(pixels);
  EXPECT_EQ(width, 22);
  EXPECT_EQ(height, 22);
  gsize size = 0;
  const auto* bytes = static_cast<const std::uint8_t*>(g_variant_get_fixed_array(pixels, &size, 1));
  return {bytes, bytes + size};
}

TEST(PanelIcon, PixelsHaveTheInkAndTheMasksOpacity) {
  const auto& mask = panelIconMasks()[1];
  const auto bytes = pixelsOfTheUsualSize(Ink::dark);
  ASSERT_EQ(bytes.size(), mask.alpha.size() * 4);
  for (std::size_t index = 0; index < mask.alpha.size(); ++index) {
    ASSERT_EQ(bytes[index * 4], mask.alpha[index]);
    ASSERT_EQ(bytes[index * 4 + 1], 0x24);
    ASSERT_EQ(bytes[index * 4 + 2], 0x24);
    ASSERT_EQ(bytes[index * 4 + 3], 0x24);
  }
}

/// How much the lightest and the darkest of an icon differ from a grey ground, each on its own.
struct Contrast {
  double light = 0;
  double dark = 0;
};

Contrast contrastOn(double ground, Ink ink) {
  const auto bytes = pixelsOfTheUsualSize(ink);
  Contrast most;
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    const double shown = ground + (bytes[at + 1] - ground) * bytes[at] / 255;
    most.light = std::max(most.light, shown - ground);
    most.dark = std::max(most.dark, ground - shown);
  }
  return most;
}

TEST(PanelIcon, AnOutlinedMarkStandsOutOnAnyGround) {
  for (const auto ink : {Ink::lightOutlined, Ink::darkOutlined}) {
    for (int ground = 0; ground <= 255; ground += 5) {
      const auto contrast = contrastOn(ground, ink);
      EXPECT_GT(std::max(contrast.light, contrast.dark), 95) << ground;
    }
  }
}

TEST(PanelIcon, AnOutlineKeepsTheStrokesApart) {
  // Between the first two tracks, away from their knobs, the ground is still seen.
  const auto bytes = pixelsOfTheUsualSize(Ink::lightOutlined);
  int clear = 0;
  for (std::size_t y = 5; y < 11; ++y) clear += bytes[(y * 22 + 18) * 4] < 40 ? 1 : 0;
  EXPECT_GE(clear, 1);
}

TEST(PanelIcon, EveryInkHasAWhisperMarkOfItsOwn) {
  std::set<std::vector<std::uint8_t>> drawings;
  for (const auto ink : {Ink::light, Ink::dark, Ink::lightOutlined, Ink::darkOutlined}) {
    const auto png = whisperPng(ink);
    drawings.insert({png.begin(), png.end()});
  }
  EXPECT_EQ(drawings.size(), 4U);
}

}  // namespace
}  // namespace quillmere::statusitem
