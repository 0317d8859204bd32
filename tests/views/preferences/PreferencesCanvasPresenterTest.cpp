// What the page of the preferences shows.
#include "views/preferences/PreferencesCanvasPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class PreferencesPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<PreferencesCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }

  std::unique_ptr<PreferencesCanvasPresenter> page;
};

TEST_F(PreferencesPage, SettingsAreWrittenThrough) {
  startViews();
  make();
  page->setScrollAdjusts(false);
  page->setShowsDuckBanner(false);
  page->setPausesOnDisconnect(false);
  EXPECT_EQ(disk.boolean("scrollOverRowAdjustsVolume"), false);
  EXPECT_EQ(disk.boolean("showDuckBanner"), false);
  EXPECT_EQ(disk.boolean("quillmere.pauseOnHeadphoneDisconnect"), false);
}

}  // namespace
}  // namespace quillmere
