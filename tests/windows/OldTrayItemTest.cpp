// The menu of the icon in trays of the old kind.
#include "windows/OldTrayItem.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QWidget>

#include "windows/BrandIconImage.h"

namespace quillmere {
namespace {

StatusMenuItem profile(int id, const std::string& name, bool isOn) {
  StatusMenuItem item;
  item.id = id;
  item.title = name;
  item.isChecked = isOn;
  return item;
}

class OldTray : public ::testing::Test {
 protected:
  OldTray() {
    item.onMenuItemChosen([this](int id, const std::string&) { chosen.push_back(id); });
    item.setMenu({profile(1, "Work", true), profile(2, "Evening", false)});
  }
  /// The entry of the menu as the toolkit shows it.
  static QAction* entry(const QString& title) {
    for (auto* widget : QApplication::allWidgets()) {
      for (auto* action : widget->actions()) {
        if (action->text() == title) return action;
      }
    }
    return nullptr;
  }

  OldTrayItem item;
  std::vector<int> chosen;
};

TEST_F(OldTray, ChoosingTheCheckedEntryLeavesItsMark) {
  entry("Work")->trigger();
  EXPECT_TRUE(entry("Work")->isChecked());
  EXPECT_FALSE(entry("Evening")->isChecked());
  EXPECT_EQ(chosen, std::vector{1});
}

TEST_F(OldTray, AnEntryIsMarkedWhenTheStateSaysSoAndNotBefore) {
  entry("Evening")->trigger();
  EXPECT_FALSE(entry("Evening")->isChecked());
  item.setMenu({profile(1, "Work", false), profile(2, "Evening", true)});
  EXPECT_TRUE(entry("Evening")->isChecked());
  EXPECT_FALSE(entry("Work")->isChecked());
}

TEST(BrandIcon, InATrayOfUnknownColourIsLightWithADarkOutline) {
  const auto icon = BrandIconImage::statusBarIcon(panelInk(std::nullopt, {}));
  const auto image = icon.pixmap(22, 22).toImage().convertToFormat(QImage::Format_ARGB32);
  int lightPixels = 0;
  int darkPixels = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const auto pixel = image.pixel(x, y);
      lightPixels += qAlpha(pixel) > 200 && qRed(pixel) > 200 ? 1 : 0;
      darkPixels += qAlpha(pixel) > 150 && qRed(pixel) < 80 ? 1 : 0;
    }
  }
  EXPECT_GT(lightPixels, 40);
  EXPECT_GT(darkPixels, 40);
}

}  // namespace
}  // namespace quillmere
