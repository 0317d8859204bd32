// A click on a tab, from the row in the windows' process to the browser.
#include <memory>

#include "RemoteFixture.h"
#include "state/ViewSettings.h"
#include "views/mixer/AppRowModel.h"

namespace quillmere {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class TabRoad : public RemoteFixture {
 protected:
  TabRoad() {
    box->browsers.setText(chrome,
                          "1\t1\t1\tNews\thttps://news.example\n"
                          "1\t2\t0\tMail\thttps://mail.example\n"
                          "2\t1\t0\tRadio\thttps://radio.example\n");
    box->launch(chrome, "Chrome");
    box->setSounding(chrome, true);
    box->start();
    box->advanceSeconds(3);
    connect();
    settings = std::make_unique<ViewSettings>(*remote);
  }
  /// The tabs in the row of the one application there is.
  TabListModel& tabs(AppRowModel::Filter filter) {
    rows =
        std::make_unique<AppRowModel>(std::shared_ptr<MixerState>(remote.get(), [](MixerState*) {}), *settings, filter);
    EXPECT_EQ(rows->count(), 1);
    return *rows->row(0)->tabs();
  }
  void TearDown() override {
    rows.reset();
    settings.reset();
  }

  std::unique_ptr<ViewSettings> settings;
  std::unique_ptr<AppRowModel> rows;
};

TEST_F(TabRoad, AClickInThePopoverReachesTheBrowser) {
  auto& list = tabs(AppRowModel::Filter::live);
  ASSERT_THAT(list.rows(), SizeIs(3));
  ASSERT_EQ(list.rows()[2].title, "Radio");
  list.activate(2);
  deliver();
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  const auto request = box->browsers.activations().front().request;
  EXPECT_EQ(request.bundleID, chrome);
  EXPECT_EQ(request.window, 2);
  EXPECT_EQ(request.tab, 1);
}

TEST_F(TabRoad, AClickInTheMainWindowReachesTheBrowser) {
  auto& list = tabs(AppRowModel::Filter::all);
  ASSERT_EQ(list.rows()[1].title, "Mail");
  list.activate(1);
  deliver();
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  EXPECT_EQ(box->browsers.activations().front().request.window, 1);
  EXPECT_EQ(box->browsers.activations().front().request.tab, 2);
}

TEST_F(TabRoad, AClickOnARowThatIsGoneReachesNobody) {
  auto& list = tabs(AppRowModel::Filter::all);
  box->browsers.setText(chrome, "");
  box->advanceSeconds(3);
  deliver();
  ASSERT_THAT(list.rows(), IsEmpty());
  list.activate(1);
  deliver();
  settle();
  EXPECT_THAT(box->browsers.activations(), IsEmpty());
}

TEST_F(TabRoad, AClickWhoseTabMovesMeanwhileAsksForThePlaceThatItHad) {
  auto& list = tabs(AppRowModel::Filter::all);
  list.activate(1);
  box->browsers.setText(chrome, "1\t1\t1\tMail\thttps://mail.example\n");
  box->advanceSeconds(3);
  deliver();
  settle();
  ASSERT_THAT(box->browsers.activations(), SizeIs(1));
  EXPECT_EQ(box->browsers.activations().front().request.tab, 2);
}

}  // namespace
}  // namespace quillmere
