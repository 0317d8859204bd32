// The rows that follow the state, and what gestures on them do.
#include "views/mixer/AppRowModel.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSignalSpy>

#include "../ViewsFixture.h"
#include "views/mixer/RowHold.h"

namespace quillmere {
namespace {

class AppRows : public ViewsFixture {
 protected:
  void makeRows(AppRowModel::Filter filter = AppRowModel::Filter::live) {
    rows = std::make_unique<AppRowModel>(sharedState(), *settings, filter);
  }
  void TearDown() override { rows.reset(); }
  [[nodiscard]] QStringList names() const {
    QStringList result;
    for (int i = 0; i < rows->count(); ++i) result.append(rows->row(i)->name());
    return result;
  }

  std::unique_ptr<AppRowModel> rows;
};

TEST_F(AppRows, PopoverListsOnlyWhatSounds) {
  startWithSounding({spotify});
  makeRows();
  EXPECT_EQ(names(), QStringList({"Spotify"}));
}

TEST_F(AppRows, MainWindowListsSilentApplicationsToo) {
  startWithSounding({spotify});
  makeRows(AppRowModel::Filter::all);
  EXPECT_EQ(names().size(), 3);
}

TEST_F(AppRows, RowsStandInTheOrderOfTheState) {
  startWithSounding({spotify, zoom, editor});
  makeRows();
  QStringList expected;
  for (const auto& app : *state().apps()) expected.append(QString::fromStdString(app.name));
  EXPECT_EQ(names(), expected);
}

TEST_F(AppRows, ApplicationThatFallsSilentLeavesThePopoverAndStaysInTheMainWindow) {
  startWithSounding({spotify, editor});
  makeRows();
  AppRowModel all(sharedState(), *settings, AppRowModel::Filter::all);
  sound(editor, false);
  EXPECT_EQ(names(), QStringList({"Spotify"}));
  EXPECT_EQ(all.count(), 3);
}

TEST_F(AppRows, ARowThatNothingShowsGoesWithItsPlace) {
  startWithSounding({spotify, editor});
  makeRows();
  const QPointer<AppRowPresenter> row = rows->row(0);
  sound(row->identifier(), false);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(row.isNull());
}

TEST_F(AppRows, ARowStaysAsLongAsAnythingShowsIt) {
  startWithSounding({spotify, editor});
  makeRows();
  const QPointer<AppRowPresenter> row = rows->row(0);
  auto first = std::make_unique<RowHold>();
  first->setRow(row);
  RowHold second;
  second.setRow(row);
  sound(row->identifier(), false);
  first.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_FALSE(row.isNull());
  second.setRow(nullptr);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(row.isNull());
}

TEST_F(AppRows, AHoldOutlivesItsRow) {
  startWithSounding({spotify});
  makeRows();
  RowHold hold;
  hold.setRow(rows->row(0));
  rows.reset();
  EXPECT_EQ(hold.row(), nullptr);
}

TEST_F(AppRows, RowIsTheSameObjectAfterItHasChanged) {
  startWithSounding({spotify});
  makeRows();
  const auto* row = rows->row(0);
  state().setGain(0.3F, spotify);
  sound(editor, true);
  ASSERT_EQ(rows->count(), 2);
  EXPECT_TRUE(rows->row(0) == row || rows->row(1) == row);
  EXPECT_EQ(row->name(), "Spotify");
  EXPECT_FLOAT_EQ(static_cast<float>(row->gain()), 0.3F);
}

TEST_F(AppRows, DetectionThatFindsNothingNewTellsNothing) {
  startWithSounding({spotify});
  makeRows();
  QSignalSpy changes(rows->row(0), &AppRowPresenter::lookChanged);
  QSignalSpy gains(rows->row(0), &AppRowPresenter::gainChanged);
  QSignalSpy counts(rows.get(), &AppRowModel::countChanged);
  for (int i = 0; i < 10; ++i) box->detect();
  EXPECT_EQ(changes.count() + gains.count() + counts.count(), 0);
  sound(editor, true);
  state().setGain(0.3F, spotify);
  state().toggleMute(spotify);
  EXPECT_GE(changes.count(), 1);
  EXPECT_EQ(gains.count(), 1);
  EXPECT_EQ(counts.count(), 1);
}

TEST_F(AppRows, GainOfAnotherApplicationDoesNotConcernARow) {
  startWithSounding({spotify, editor});
  makeRows(AppRowModel::Filter::all);
  ASSERT_TRUE(names().contains("Editor") && names().contains("Spotify"));
  QSignalSpy others(rows->row(static_cast<int>(names().indexOf("Editor"))), &AppRowPresenter::gainChanged);
  QSignalSpy own(rows->row(static_cast<int>(names().indexOf("Spotify"))), &AppRowPresenter::gainChanged);
  state().setGain(0.3F, spotify);
  EXPECT_EQ(own.count(), 1);
  EXPECT_EQ(others.count(), 0);
}

TEST_F(AppRows, DraggingSetsTheGain) {
  startWithSounding({spotify});
  makeRows();
  rows->row(0)->setGain(0.25);
  settle();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.25F);
  EXPECT_EQ(rows->row(0)->gain(), 0.25);
  EXPECT_EQ(rows->row(0)->percentText(), "25%");
  EXPECT_EQ(engineCalls(), std::vector{gainCall(spotify, 0.25F)});
}

TEST_F(AppRows, ScrollMovesTheGainByHalfAPercentAUnit) {
  startWithSounding({spotify});
  makeRows();
  rows->row(0)->setGain(0.5);
  EXPECT_TRUE(rows->row(0)->scrollBy(4));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.52F);
  EXPECT_TRUE(rows->row(0)->scrollBy(-10));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.47F);
}

TEST_F(AppRows, ScrollPastTheEndsIsLimitedAndStillSetsTheGain) {
  startWithSounding({spotify});
  makeRows();
  rows->row(0)->scrollBy(500);
  rows->row(0)->scrollBy(-5000);
  rows->row(0)->scrollBy(-1);
  settle();
  EXPECT_EQ(engineCalls(), (std::vector{gainCall(spotify, 1.0F), gainCall(spotify, 0.0F), gainCall(spotify, 0.0F)}));
}

TEST_F(AppRows, ScrollWithTheSettingOffIsNotUsed) {
  startWithSounding({spotify});
  makeRows();
  settings->setScrollOverRowAdjustsVolume(false);
  EXPECT_FALSE(rows->row(0)->scrollAdjusts());
  EXPECT_FALSE(rows->row(0)->scrollBy(10));
  settle();
  EXPECT_TRUE(engineCalls().empty());
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(AppRows, MuteButtonTurnsTheMuteRoundAndLeavesTheGain) {
  startWithSounding({spotify});
  makeRows();
  rows->row(0)->setGain(0.4);
  rows->row(0)->toggleMute();
  EXPECT_TRUE(rows->row(0)->muted());
  EXPECT_EQ(rows->row(0)->percentText(), "40%");
  rows->row(0)->toggleMute();
  EXPECT_FALSE(rows->row(0)->muted());
}

TEST_F(AppRows, RouteMenuMarksTheDefaultUntilADeviceIsChosen) {
  box->addHeadset();
  startWithSounding({spotify});
  makeRows();
  auto& menu = *rows->row(0)->routeMenu();
  EXPECT_EQ(titles(menu), QStringList({"* System default", "-", "Speakers", "Headset"}));
  choose(menu, "Headset");
  EXPECT_EQ(titles(menu), QStringList({"System default", "-", "Speakers", "* Headset"}));
  EXPECT_EQ(rows->row(0)->routedDeviceName(), "Headset");
  choose(menu, "System default");
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, std::nullopt);
}

TEST_F(AppRows, RouteMenuOfAVanishedDeviceMarksNothing) {
  const auto headset = box->addHeadset();
  startWithSounding({spotify});
  makeRows();
  state().setRouting("headset", spotify);
  box->audio.removeDevice(headset);
  box->advanceSeconds(4);
  EXPECT_EQ(titles(*rows->row(0)->routeMenu()), QStringList({"System default", "-", "Speakers"}));
  EXPECT_EQ(rows->row(0)->routedDeviceName(), "");
  EXPECT_EQ(rows->row(0)->statusSymbol(), "headphones");
}

TEST_F(AppRows, DuckedApplicationIsShownAsDuckedWhateverTheBannerSetting) {
  startWithSounding({spotify});
  settings->setShowDuckBanner(false);
  makeRows();
  microphone(zoom, true);
  EXPECT_TRUE(rows->row(0)->ducked());
  EXPECT_EQ(rows->row(0)->percentText(), "30%");
}

TEST_F(AppRows, WithoutTabsARowHasAnEmptyList) {
  startWithSounding({spotify});
  makeRows();
  EXPECT_TRUE(rows->row(0)->tabs()->isEmpty());
}

TEST_F(AppRows, IdentifierOfAnyKindMakesAnAddressForItsIcon) {
  box->launch("org.example/ odd?#%", "Odd");
  box->setSounding("org.example/ odd?#%", true);
  startViews();
  makeRows();
  const auto url = rows->row(0)->iconSource();
  EXPECT_TRUE(url.isValid());
  EXPECT_EQ(url.scheme(), "image");
  EXPECT_EQ(QByteArray::fromBase64(url.path().mid(1).toLatin1(), QByteArray::Base64UrlEncoding), "org.example/ odd?#%");
}

}  // namespace
}  // namespace quillmere
