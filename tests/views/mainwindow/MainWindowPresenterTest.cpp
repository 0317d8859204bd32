// The main window around its canvas, without a window.
#include "views/mainwindow/MainWindowPresenter.h"

#include <QPointer>
#include <QSignalSpy>

#include "../ViewsFixture.h"
#include "platform/Updater.h"

namespace quillmere {
namespace {

class KnownVersion final : public Updater {
 public:
  void checkForUpdates() override { ++checks; }
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latest; }

  Observable<std::optional<std::string>> latest;
  int checks = 0;
};

class MainWindow : public ViewsFixture {
 protected:
  /// This program's version is 1.9.9.
  void make() {
    box->state->useUpdater(updater);
    window = std::make_unique<MainWindowPresenter>(services());
  }
  void TearDown() override {
    window.reset();
    box->state.reset();
  }
  [[nodiscard]] static QString text(SidebarModel& items, int row, int role) {
    return items.data(items.index(row), role).toString();
  }
  [[nodiscard]] QString badge() const { return text(*window->upperItems(), 0, SidebarModel::BadgeRole); }

  KnownVersion updater;
  std::unique_ptr<MainWindowPresenter> window;
};

TEST_F(MainWindow, SectionsStandInTheirOrderWithTheirTitlesSymbolsAndCanvases) {
  const QStringList titles{"Mixer", "Profiles", "Activity", "Auto-Duck", "Focus", "Settings"};
  const QStringList symbols{"slider.horizontal.3",  "rectangle.stack", "waveform.path",
                            "waveform.badge.minus", "timer",           "gearshape"};
  const QStringList canvases{"MixerCanvas",    "ProfilesCanvas", "ActivityCanvas",
                             "AutoDuckCanvas", "FocusCanvas",    "PreferencesCanvas"};
  ASSERT_EQ(allSections.size(), 6U);
  for (std::size_t at = 0; at < allSections.size(); ++at) {
    const auto row = static_cast<qsizetype>(at);
    EXPECT_EQ(rawValue(allSections[at]), titles[row]);
    EXPECT_EQ(titleOf(allSections[at]), titles[row]);
    EXPECT_EQ(symbolOf(allSections[at]), symbols[row]);
    EXPECT_EQ(canvasOf(allSections[at]), canvases[row]);
    EXPECT_EQ(sectionOf(titles[row]), allSections[at]);
  }
}

TEST_F(MainWindow, SettingsStandsByItselfBelowTheOthers) {
  startViews();
  make();
  QStringList upper;
  for (int row = 0; row < window->upperItems()->rowCount(); ++row) {
    upper.append(text(*window->upperItems(), row, SidebarModel::TitleRole));
  }
  EXPECT_EQ(upper, QStringList({"Mixer", "Profiles", "Activity", "Auto-Duck", "Focus"}));
  ASSERT_EQ(window->lowerItems()->rowCount(), 1);
  EXPECT_EQ(text(*window->lowerItems(), 0, SidebarModel::TitleRole), "Settings");
  EXPECT_EQ(text(*window->lowerItems(), 0, SidebarModel::SymbolRole), "gearshape");
}

TEST_F(MainWindow, StartsAtTheMixer) {
  startViews();
  make();
  EXPECT_EQ(window->section(), "Mixer");
  EXPECT_EQ(window->canvasSource().fileName(), "MixerCanvas.qml");
  EXPECT_EQ(text(*window->upperItems(), 0, SidebarModel::SelectedRole), "true");
}

TEST_F(MainWindow, RequestNamesASectionByItsRawValue) {
  startViews();
  make();
  window->show("Settings");
  EXPECT_EQ(window->section(), "Settings");
  EXPECT_EQ(window->canvasSource().fileName(), "PreferencesCanvas.qml");
  EXPECT_EQ(text(*window->lowerItems(), 0, SidebarModel::SelectedRole), "true");
  EXPECT_EQ(text(*window->upperItems(), 0, SidebarModel::SelectedRole), "false");
}

TEST_F(MainWindow, RequestThatNamesNoSectionChangesNothing) {
  startViews();
  make();
  window->show("Focus");
  QSignalSpy changes(window.get(), &MainWindowPresenter::canvasChanged);
  window->show("settings");
  window->show("");
  window->show("PreferencesCanvas");
  EXPECT_EQ(window->section(), "Focus");
  EXPECT_EQ(changes.count(), 0);
}

TEST_F(MainWindow, EachSectionHasACanvasPresenterOfItsOwn) {
  startViews();
  make();
  for (const auto section : allSections) {
    window->show(rawValue(section));
    ASSERT_NE(window->canvas(), nullptr);
    EXPECT_EQ(QString(window->canvas()->metaObject()->className()), "quillmere::" + canvasOf(section) + "Presenter");
  }
}

TEST_F(MainWindow, CanvasStartsAnewEachTimeItsSectionIsShown) {
  startViews();
  make();
  const QPointer<QObject> first = window->canvas();
  window->show("Focus");
  const QPointer<QObject> focus = window->canvas();
  window->show("Mixer");
  EXPECT_NE(window->canvas(), first.data());
  // What showed it may still need it for a moment.
  EXPECT_FALSE(focus.isNull());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(focus.isNull());
  EXPECT_TRUE(first.isNull());
}

TEST_F(MainWindow, SectionThatShowsAlreadyKeepsItsCanvas) {
  startViews();
  make();
  window->show("Focus");
  auto* canvas = window->canvas();
  window->show("Focus");
  EXPECT_EQ(window->canvas(), canvas);
}

TEST_F(MainWindow, ClosedAndOpenedAnewItStartsAtTheMixer) {
  startViews();
  make();
  window->show("Activity");
  window->setVisible(false);
  EXPECT_EQ(window->canvas(), nullptr);
  EXPECT_TRUE(window->canvasSource().isEmpty());
  window->setVisible(true);
  EXPECT_EQ(window->section(), "Mixer");
  EXPECT_NE(window->canvas(), nullptr);
}

TEST_F(MainWindow, OpeningThatNamesASectionShowsIt) {
  startViews();
  make();
  window->setVisible(false);
  window->show("Settings");
  EXPECT_EQ(window->canvas(), nullptr);
  window->setVisible(true);
  EXPECT_EQ(window->section(), "Settings");
  EXPECT_EQ(window->canvasSource().fileName(), "PreferencesCanvas.qml");
}

TEST_F(MainWindow, NextSectionGoesRoundAtBothEnds) {
  startViews();
  make();
  window->showNext(-1);
  EXPECT_EQ(window->section(), "Settings");
  window->showNext(1);
  window->showNext(1);
  EXPECT_EQ(window->section(), "Profiles");
}

TEST_F(MainWindow, NothingLiveAndNothingDuckedHasNoStatusAndNoBadge) {
  startWithSounding({});
  make();
  EXPECT_EQ(window->liveText(), "");
  EXPECT_EQ(window->duckingText(), "");
  EXPECT_EQ(badge(), "");
}

TEST_F(MainWindow, OneLiveApplicationIsSingular) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(window->liveText(), "1 source active");
  EXPECT_EQ(badge(), "1");
}

TEST_F(MainWindow, TwoLiveApplicationsAndACallShowBothLinesAndTheBadge) {
  startWithSounding({spotify, editor});
  make();
  microphone(zoom, true);
  EXPECT_EQ(window->liveText(), "2 sources active");
  EXPECT_EQ(window->duckingText(), "Ducked — call active");
  EXPECT_EQ(badge(), "2");
  for (int row = 1; row < window->upperItems()->rowCount(); ++row) {
    EXPECT_EQ(text(*window->upperItems(), row, SidebarModel::BadgeRole), "");
  }
}

TEST_F(MainWindow, BadgeFollowsWhatSoundsAndOnlyThatEntryIsTold) {
  startWithSounding({spotify});
  make();
  QSignalSpy upper(window->upperItems(), &SidebarModel::dataChanged);
  QSignalSpy lower(window->lowerItems(), &SidebarModel::dataChanged);
  for (int i = 0; i < 10; ++i) box->detect();
  EXPECT_EQ(upper.count(), 0);
  sound(editor, true);
  EXPECT_EQ(badge(), "2");
  ASSERT_EQ(upper.count(), 1);
  EXPECT_EQ(upper.first().at(0).toModelIndex().row(), 0);
  EXPECT_EQ(lower.count(), 0);
}

TEST_F(MainWindow, NoVersionKnownShowsNoBanner) {
  startViews();
  make();
  EXPECT_EQ(window->updateText(), "");
}

TEST_F(MainWindow, VersionOfOursShowsNoBanner) {
  startViews();
  make();
  updater.latest.set("1.9.9");
  EXPECT_EQ(window->updateText(), "");
}

TEST_F(MainWindow, UnreadableVersionShowsNoBanner) {
  startViews();
  make();
  updater.latest.set("soon");
  EXPECT_EQ(window->updateText(), "");
}

TEST_F(MainWindow, NewerVersionShowsTheBannerForAsLongAsItIsKnown) {
  startViews();
  make();
  QSignalSpy told(window.get(), &MainWindowPresenter::updateTextChanged);
  updater.latest.set("2.0");
  EXPECT_EQ(window->updateText(), "Update available — v2.0");
  EXPECT_EQ(told.count(), 1);
  updater.latest.set(std::nullopt);
  EXPECT_EQ(window->updateText(), "");
}

TEST_F(MainWindow, UpdateButtonDoesWhatTheStatusItemsEntryDoes) {
  startViews();
  make();
  window->update();
  EXPECT_EQ(updater.checks, 1);
}

}  // namespace
}  // namespace quillmere
