// What the page of the profiles shows.
#include "views/profiles/ProfilesCanvasPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class ProfilesPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<ProfilesCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  [[nodiscard]] QString profile(int row, int role) const {
    return page->list()->data(page->list()->index(row), role).toString();
  }

  std::unique_ptr<ProfilesCanvasPresenter> page;
};

TEST_F(ProfilesPage, ProfilesAreListedWithTheirSizes) {
  startWithSounding({});
  make();
  page->list()->saveCurrent();
  ASSERT_EQ(page->list()->count(), 2);
  EXPECT_EQ(profile(1, ProfileListModel::NameRole), "Untitled 2");
  EXPECT_EQ(profile(1, ProfileListModel::SizeTextRole), "3 apps");
  EXPECT_EQ(profile(0, ProfileListModel::SizeTextRole), "0 apps");
}

TEST_F(ProfilesPage, ProfilesAreAppliedDuplicatedAndDeleted) {
  startWithSounding({});
  make();
  page->list()->saveCurrent();
  page->list()->apply(1);
  EXPECT_EQ(profile(1, ProfileListModel::ActiveRole), "true");
  page->list()->duplicate(1);
  EXPECT_EQ(page->list()->count(), 3);
  page->list()->remove(0);
  EXPECT_EQ(page->list()->count(), 2);
  EXPECT_EQ(profile(0, ProfileListModel::NameRole), "Untitled 2");
  page->list()->remove(17);
  EXPECT_EQ(page->list()->count(), 2);
}

}  // namespace
}  // namespace quillmere
