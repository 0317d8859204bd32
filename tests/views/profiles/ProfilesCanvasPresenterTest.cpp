// What the page of the profiles shows, and what its editor does.
#include "views/profiles/ProfilesCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class ProfilesPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<ProfilesCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  [[nodiscard]] QVariant tile(int row, int role) const {
    return page->profiles()->data(page->profiles()->index(row), role);
  }
  [[nodiscard]] QStringList names() const {
    QStringList all;
    for (int row = 0; row < page->profiles()->count(); ++row) {
      all.append(tile(row, ProfileListModel::NameRole).toString());
    }
    return all;
  }
  [[nodiscard]] QVariant entry(int row, int role) const {
    return editor().entries()->data(editor().entries()->index(row), role);
  }
  [[nodiscard]] ProfileEditorPresenter& editor() const { return *page->editor(); }
  [[nodiscard]] const Profile& stored(std::size_t at) const { return state().profiles()->at(at); }
  /// Names the first profile and gives it what the mixer has.
  void fillFirst(const std::string& name) {
    auto profile = stored(0);
    profile.name = name;
    profile.apps = *state().apps();
    state().updateProfile(profile);
  }

  std::unique_ptr<ProfilesCanvasPresenter> page;
};

TEST_F(ProfilesPage, WithNothingAppliedTheLiveMixerIsInEffect) {
  startViews();
  make();
  EXPECT_FALSE(page->anyActive());
  EXPECT_EQ(page->heroTitle(), "No profile applied");
  EXPECT_EQ(page->heroDetail(), "Live mixer values are in effect.");
}

TEST_F(ProfilesPage, HeroTellsTheActiveProfileAndItsSize) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  page->profiles()->apply(0);
  EXPECT_TRUE(page->anyActive());
  EXPECT_EQ(page->heroTitle(), "Evening");
  EXPECT_EQ(page->heroDetail(), "3 apps");
}

TEST_F(ProfilesPage, ActiveProfileThatIsDeletedLeavesTheHero) {
  startWithSounding({});
  make();
  page->profiles()->apply(0);
  page->profiles()->remove(0);
  EXPECT_FALSE(page->anyActive());
}

TEST_F(ProfilesPage, FirstProfileIsSelectedWhenThePageAppears) {
  startViews();
  state().addProfile("Second");
  make();
  EXPECT_EQ(page->selectedRow(), 0);
  EXPECT_TRUE(tile(0, ProfileListModel::SelectedRole).toBool());
  EXPECT_FALSE(tile(1, ProfileListModel::SelectedRole).toBool());
  EXPECT_EQ(editor().name(), "Default");
}

TEST_F(ProfilesPage, WithoutProfilesNothingIsSelectedUntilOneComes) {
  startViews();
  state().deleteProfile(stored(0).id);
  make();
  EXPECT_FALSE(page->anySelected());
  EXPECT_EQ(page->selectedRow(), -1);
  state().addProfile("First");
  EXPECT_TRUE(page->anySelected());
  EXPECT_EQ(editor().name(), "First");
}

TEST_F(ProfilesPage, TilesHaveNamesSizesAndMarks) {
  startWithSounding({});
  state().addProfile("Evening");
  make();
  EXPECT_EQ(names(), QStringList({"Default", "Evening"}));
  EXPECT_EQ(tile(0, ProfileListModel::SizeTextRole), "0 apps");
  EXPECT_EQ(tile(1, ProfileListModel::SizeTextRole), "3 apps");
  auto profile = stored(0);
  profile.apps = {state().apps()->front()};
  state().updateProfile(profile);
  EXPECT_EQ(tile(0, ProfileListModel::SizeTextRole), "1 app");
  page->profiles()->apply(1);
  EXPECT_TRUE(tile(1, ProfileListModel::ActiveRole).toBool());
  EXPECT_FALSE(tile(0, ProfileListModel::ActiveRole).toBool());
}

TEST_F(ProfilesPage, NewProfileTakesTheMixerTheNextNumberAndTheSelection) {
  startWithSounding({});
  make();
  page->create();
  EXPECT_EQ(names(), QStringList({"Default", "Untitled 2"}));
  EXPECT_EQ(page->selectedRow(), 1);
  EXPECT_EQ(editor().name(), "Untitled 2");
  EXPECT_EQ(editor().entries()->count(), 3);
}

TEST_F(ProfilesPage, NumbersOfNewProfilesAreNotUnique) {
  startViews();
  make();
  page->create();
  page->profiles()->remove(0);
  page->create();
  EXPECT_EQ(names(), QStringList({"Untitled 2", "Untitled 2"}));
}

TEST_F(ProfilesPage, ProfileOfSomebodyElseTakesNoSelection) {
  startViews();
  make();
  state().addProfile("From the popover");
  EXPECT_EQ(page->selectedRow(), 0);
}

TEST_F(ProfilesPage, DeletingTheSelectedProfileSelectsTheFirst) {
  startViews();
  state().addProfile("Second");
  state().addProfile("Third");
  make();
  page->select(2);
  editor().remove();
  EXPECT_EQ(page->selectedRow(), 0);
  EXPECT_EQ(editor().name(), "Default");
}

TEST_F(ProfilesPage, DeletingTheLastProfileLeavesNothingSelected) {
  startViews();
  make();
  editor().remove();
  EXPECT_FALSE(page->anySelected());
}

TEST_F(ProfilesPage, DeletingAnotherProfileKeepsTheSelection) {
  startViews();
  state().addProfile("Second");
  make();
  page->select(1);
  editor().setName("Changed");
  page->profiles()->remove(0);
  EXPECT_EQ(page->selectedRow(), 0);
  EXPECT_EQ(editor().name(), "Changed");
  EXPECT_TRUE(editor().isDirty());
}

TEST_F(ProfilesPage, DuplicateGoesToTheEnd) {
  startViews();
  state().addProfile("Second");
  make();
  page->profiles()->duplicate(0);
  EXPECT_EQ(names(), QStringList({"Default", "Second", "Default Copy"}));
  EXPECT_EQ(page->selectedRow(), 0);
}

TEST_F(ProfilesPage, RowsThatAreNotThereDoNothing) {
  startViews();
  make();
  page->profiles()->apply(7);
  page->profiles()->duplicate(-1);
  page->profiles()->remove(1);
  page->select(9);
  EXPECT_EQ(names(), QStringList({"Default"}));
  EXPECT_EQ(page->selectedRow(), 0);
  EXPECT_FALSE(page->anyActive());
}

TEST_F(ProfilesPage, EditsReachTheStoreOnlyWhenTheyAreSaved) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  EXPECT_FALSE(editor().isDirty());
  EXPECT_EQ(editor().saveText(), "Saved");
  editor().setName("Night");
  editor().entries()->setGain(0, 0.25);
  EXPECT_TRUE(editor().isDirty());
  EXPECT_EQ(editor().saveText(), "Save changes");
  EXPECT_EQ(stored(0).name, "Evening");
  EXPECT_FLOAT_EQ(stored(0).apps[0].gain, 1.0F);
  editor().save();
  EXPECT_FALSE(editor().isDirty());
  EXPECT_EQ(stored(0).name, "Night");
  EXPECT_FLOAT_EQ(stored(0).apps[0].gain, 0.25F);
  EXPECT_EQ(storedProfiles().at(0).name, "Night");
  EXPECT_EQ(names(), QStringList({"Night"}));
}

TEST_F(ProfilesPage, SavingCarriesWhatThePageDoesNotShow) {
  startViews();
  auto profile = stored(0);
  profile.focusModeID = "work";
  state().updateProfile(profile);
  make();
  editor().setName("Renamed");
  editor().save();
  EXPECT_EQ(stored(0).focusModeID, "work");
  EXPECT_EQ(stored(0).id, profile.id);
}

TEST_F(ProfilesPage, DiscardTakesTheStoredProfileAgain) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  editor().setName("Night");
  editor().entries()->remove(0);
  editor().discard();
  EXPECT_FALSE(editor().isDirty());
  EXPECT_EQ(editor().name(), "Evening");
  EXPECT_EQ(editor().entries()->count(), 3);
}

TEST_F(ProfilesPage, SelectingAnotherProfileDropsUnsavedEdits) {
  startViews();
  state().addProfile("Second");
  make();
  editor().setName("Changed");
  page->select(1);
  EXPECT_FALSE(editor().isDirty());
  EXPECT_EQ(editor().name(), "Second");
  page->select(0);
  EXPECT_EQ(editor().name(), "Default");
}

TEST_F(ProfilesPage, SelectingTheSameProfileAgainKeepsEdits) {
  startViews();
  make();
  editor().setName("Changed");
  page->select(0);
  EXPECT_EQ(editor().name(), "Changed");
  EXPECT_TRUE(editor().isDirty());
}

TEST_F(ProfilesPage, ChangesFromElsewhereDoNotReachTheCopy) {
  startViews();
  make();
  editor().setName("Mine");
  auto profile = stored(0);
  profile.name = "Theirs";
  state().updateProfile(profile);
  EXPECT_EQ(editor().name(), "Mine");
}

TEST_F(ProfilesPage, EmptyNameIsStoredAsItIsAndHeadedUntitled) {
  startViews();
  make();
  editor().setName("");
  EXPECT_EQ(editor().title(), "Untitled");
  editor().save();
  EXPECT_EQ(stored(0).name, "");
  EXPECT_EQ(tile(0, ProfileListModel::NameRole), "");
  EXPECT_EQ(editor().title(), "Untitled");
}

TEST_F(ProfilesPage, TypingTheSameNameIsNoEdit) {
  startViews();
  make();
  editor().setName("Default");
  EXPECT_FALSE(editor().isDirty());
}

TEST_F(ProfilesPage, SyncTakesTheMixerAsItIs) {
  startWithSounding({});
  make();
  state().setGain(0.4F, spotify);
  state().toggleMute(zoom);
  editor().syncFromMixer();
  EXPECT_TRUE(editor().isDirty());
  EXPECT_EQ(editor().countText(), "3");
  EXPECT_EQ(editor().entries()->apps(), *state().apps());
  EXPECT_TRUE(stored(0).apps.empty());
}

TEST_F(ProfilesPage, SyncedEntryStaysWhenTheMixerLosesItsApplication) {
  startWithSounding({});
  make();
  editor().syncFromMixer();
  box->quit(quillmere::editor);
  box->detect();
  editor().save();
  EXPECT_EQ(stored(0).apps.size(), 3U);
  page->profiles()->apply(0);
  EXPECT_EQ(state().apps()->size(), 2U);
}

TEST_F(ProfilesPage, AddedApplicationComesAtTheEndWithItsLevel) {
  startWithSounding({});
  desktop.workspace.install("org.example.rain", "Rain", "/apps/rain");
  make();
  editor().syncFromMixer();
  editor().save();
  editor().addApp();
  settle();
  auto& picker = *editor().picker();
  const auto last = picker.apps()->count() - 1;
  EXPECT_TRUE(picker.apps()->isAdded(0));
  ASSERT_EQ(picker.apps()->at(last).bundleID, "org.example.rain");
  picker.pick(last);
  EXPECT_TRUE(editor().isDirty());
  EXPECT_EQ(editor().entries()->apps().back(), (AudioApp{"org.example.rain", "Rain", 0.7F, false, std::nullopt}));
}

TEST_F(ProfilesPage, EntryShowsItsLevelCutAndItsMarks) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  editor().entries()->setGain(0, 0.999);
  EXPECT_EQ(entry(0, ProfileEntryModel::PercentTextRole), "99%");
  EXPECT_EQ(entry(0, ProfileEntryModel::MuteSymbolRole), "speaker.wave.2");
  EXPECT_EQ(entry(0, ProfileEntryModel::MuteTipRole), "Mute");
  EXPECT_EQ(entry(0, ProfileEntryModel::RouteSymbolRole), "headphones");
  editor().entries()->toggleMute(0);
  editor().entries()->setRoute(0, "speakers");
  EXPECT_EQ(entry(0, ProfileEntryModel::MuteSymbolRole), "speaker.slash.fill");
  EXPECT_EQ(entry(0, ProfileEntryModel::MuteTipRole), "Unmute");
  EXPECT_EQ(entry(0, ProfileEntryModel::RouteSymbolRole), "headphones.circle.fill");
}

TEST_F(ProfilesPage, EditingAnEntryMovesNothingInTheMixer) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  forget();
  editor().entries()->setGain(0, 0.1);
  editor().entries()->toggleMute(0);
  settle();
  EXPECT_FLOAT_EQ(state().apps()->front().gain, 1.0F);
  EXPECT_TRUE(engineCalls().empty());
  EXPECT_TRUE(disk.written().empty());
}

TEST_F(ProfilesPage, RouteMenuMarksTheEntrysDeviceAndPinsItToAnother) {
  box->addHeadset();
  startWithSounding({});
  fillFirst("Evening");
  make();
  box->advanceSeconds(4);
  editor().fillRoutes(1);
  EXPECT_EQ(titles(*editor().routeMenu()), QStringList({"* System default", "-", "Speakers", "Headset"}));
  choose(*editor().routeMenu(), "Headset");
  EXPECT_EQ(editor().entries()->apps()[1].routedDeviceUID, "headset");
  EXPECT_TRUE(editor().isDirty());
  editor().fillRoutes(1);
  EXPECT_EQ(titles(*editor().routeMenu()), QStringList({"System default", "-", "Speakers", "* Headset"}));
  choose(*editor().routeMenu(), "System default");
  EXPECT_EQ(editor().entries()->apps()[1].routedDeviceUID, std::nullopt);
}

TEST_F(ProfilesPage, RouteToADeviceThatIsGoneShowsNoMark) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  editor().entries()->setRoute(0, "gone");
  editor().fillRoutes(0);
  EXPECT_EQ(titles(*editor().routeMenu()), QStringList({"System default", "-", "Speakers"}));
}

TEST_F(ProfilesPage, ApplyNowAppliesTheStoredProfileAndLeavesTheCopyDirty) {
  startWithSounding({});
  fillFirst("Evening");
  make();
  state().setGain(0.3F, spotify);
  editor().entries()->setGain(0, 0.1);
  editor().apply();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_TRUE(editor().isDirty());
  EXPECT_TRUE(editor().isActive());
  EXPECT_NEAR(entry(0, ProfileEntryModel::GainRole).toDouble(), 0.1, 1e-6);
}

TEST_F(ProfilesPage, SavingAProfileThatIsGoneShowsSaved) {
  startViews();
  state().addProfile("Other");
  ProfileEditorPresenter alone(services());
  alone.edit(stored(0).id);
  state().deleteProfile(stored(0).id);
  alone.setName("Late");
  alone.save();
  EXPECT_EQ(alone.saveText(), "Saved");
  ASSERT_EQ(state().profiles()->size(), 1U);
  EXPECT_EQ(stored(0).name, "Other");
}

TEST_F(ProfilesPage, OnlyTheActiveProfilesEditorIsMarked) {
  startViews();
  state().addProfile("Second");
  make();
  page->profiles()->apply(1);
  EXPECT_FALSE(editor().isActive());
  page->select(1);
  EXPECT_TRUE(editor().isActive());
}

TEST_F(ProfilesPage, EntryMayBeThereTwice) {
  startWithSounding({});
  fillFirst("Evening");
  auto profile = stored(0);
  profile.apps.push_back(profile.apps[0]);
  state().updateProfile(profile);
  make();
  editor().entries()->setGain(3, 0.2);
  EXPECT_FLOAT_EQ(editor().entries()->apps()[0].gain, 1.0F);
  EXPECT_FLOAT_EQ(editor().entries()->apps()[3].gain, 0.2F);
}

TEST_F(ProfilesPage, EditingOneOfTenThousandEntriesTellsThatRowAlone) {
  startViews();
  auto profile = stored(0);
  for (int i = 0; i < 10000; ++i)
    profile.apps.push_back({"org.example.app" + std::to_string(i), "App", 1.0F, false, {}});
  state().updateProfile(profile);
  make();
  ASSERT_EQ(editor().entries()->count(), 10000);
  QSignalSpy changes(editor().entries(), &QAbstractItemModel::dataChanged);
  editor().entries()->setGain(9999, 0.5);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex().row(), 9999);
  EXPECT_EQ(changes[0][1].toModelIndex().row(), 9999);
}

}  // namespace
}  // namespace quillmere
