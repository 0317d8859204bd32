// Profiles: saving, changing, copying, applying, and what reaches the store and the engine.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Profiles : public StateFixture {
 protected:
  void SetUp() override { startWithThree(); }
  [[nodiscard]] Uuid add(const std::string& name) {
    state().addProfile(name);
    settle();
    forget();
    return state().profiles()->back().id;
  }
};

TEST_F(Profiles, AddingSavesThePresentListAtTheEndAndDoesNotMakeItActive) {
  state().setGain(0.5F, spotify);
  settle();
  forget();
  state().addProfile("Evening");
  ASSERT_EQ(state().profiles()->size(), 2U);
  const auto& added = state().profiles()->back();
  EXPECT_EQ(added.name, "Evening");
  EXPECT_EQ(added.apps, *state().apps());
  EXPECT_EQ(added.focusModeID, std::nullopt);
  EXPECT_EQ(added.updatedAt, box->time.now());
  EXPECT_EQ(*state().activeProfileID(), std::nullopt);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.profiles"));
  EXPECT_EQ(storedProfiles(), *state().profiles());
}

TEST_F(Profiles, AProfileSavedDuringADuckHoldsTheLoweredGains) {
  microphone(zoom, true);
  state().addProfile("During a call");
  EXPECT_FLOAT_EQ(state().profiles()->back().apps.at(1).gain, 0.3F);
}

TEST_F(Profiles, AProfileOfAnEmptyListChangesNothingAndStillBecomesActive) {
  for (const auto* each : {spotify, zoom, editor}) box->quit(each);
  box->detect();
  const auto id = add("Empty");
  EXPECT_THAT(state().profiles()->back().apps, IsEmpty());
  box->launch(spotify, "Spotify");
  box->detect();
  state().setGain(0.5F, spotify);
  state().applyProfile(id);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_EQ(*state().activeProfileID(), id);
}

TEST_F(Profiles, DeletingTheActiveProfileLeavesNoneActiveAndTheGainsAsTheyAre) {
  state().setGain(0.5F, spotify);
  const auto id = add("Evening");
  state().applyProfile(id);
  settle();
  forget();
  state().deleteProfile(id);
  settle();
  EXPECT_EQ(*state().activeProfileID(), std::nullopt);
  EXPECT_EQ(state().profiles()->size(), 1U);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.profiles", "quillmere.activeProfileID"));
  EXPECT_FALSE(disk.has("quillmere.activeProfileID"));
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(Profiles, DeletingAnInactiveProfileLeavesTheActiveOneAlone) {
  const auto active = add("Evening");
  const auto other = add("Morning");
  state().applyProfile(active);
  state().deleteProfile(other);
  EXPECT_EQ(*state().activeProfileID(), active);
  EXPECT_EQ(disk.string("quillmere.activeProfileID"), active.text());
}

TEST_F(Profiles, DeletingAnUnknownProfileRemovesNothingAndStoresAsUsual) {
  state().deleteProfile(Uuid::random());
  EXPECT_EQ(state().profiles()->size(), 1U);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.profiles", "quillmere.activeProfileID"));
}

TEST_F(Profiles, DeletingByTheIdInsideTheListItselfIsSafe) {
  static_cast<void>(add("Evening"));
  state().deleteProfile(state().profiles()->front().id);
  ASSERT_EQ(state().profiles()->size(), 1U);
  EXPECT_EQ(state().profiles()->front().name, "Evening");
}

TEST_F(Profiles, UpdatingReplacesTheEntryAndSetsItsDate) {
  static_cast<void>(add("Evening"));
  const auto last = add("Night");
  auto changed = state().profiles()->at(1);
  changed.name = "Late evening";
  changed.updatedAt = Date{1.0};
  box->advanceSeconds(5);
  state().updateProfile(changed);
  EXPECT_EQ(state().profiles()->at(1).name, "Late evening");
  EXPECT_EQ(state().profiles()->at(1).updatedAt, box->time.now());
  EXPECT_EQ(state().profiles()->at(2).id, last) << "the order stays";
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.profiles"));
}

TEST_F(Profiles, UpdatingWithAnIdThatMatchesNothingChangesAndWritesNothing) {
  auto changed = state().profiles()->front();
  changed.id = Uuid::random();
  changed.name = "Nobody's";
  const auto before = *state().profiles();
  state().updateProfile(changed);
  EXPECT_EQ(*state().profiles(), before);
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(Profiles, ADuplicateGoesToTheEndAndCarriesTheFocusMode) {
  const auto id = add("Evening");
  static_cast<void>(add("Night"));
  auto withFocus = state().profiles()->at(1);
  withFocus.focusModeID = "org.example.focus";
  state().updateProfile(withFocus);
  state().duplicateProfile(id);
  ASSERT_EQ(state().profiles()->size(), 4U);
  const auto& copy = state().profiles()->back();
  EXPECT_NE(copy.id, id);
  EXPECT_EQ(copy.name, "Evening Copy");
  EXPECT_EQ(copy.apps, withFocus.apps);
  EXPECT_EQ(copy.focusModeID, "org.example.focus");
  EXPECT_EQ(copy.updatedAt, box->time.now());
}

TEST_F(Profiles, ACopyOfACopyEndsInTheWordTwice) {
  state().duplicateProfile(add("Evening"));
  state().duplicateProfile(state().profiles()->back().id);
  EXPECT_EQ(state().profiles()->back().name, "Evening Copy Copy");
}

TEST_F(Profiles, DuplicatingAndApplyingAnUnknownProfileDoNothing) {
  const auto before = *state().profiles();
  state().duplicateProfile(Uuid::random());
  state().applyProfile(Uuid::random());
  settle();
  EXPECT_EQ(*state().profiles(), before);
  EXPECT_EQ(*state().activeProfileID(), std::nullopt);
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(Profiles, ApplyingSetsGainMuteAndRouteAndStoresThreeKeysInOrder) {
  state().setGain(0.5F, spotify);
  state().toggleMute(zoom);
  state().setRouting("headset", editor);
  const auto id = add("Evening");
  const auto saved = *state().apps();
  state().setGain(1.0F, spotify);
  state().toggleMute(zoom);
  state().setRouting(std::nullopt, editor);
  settle();
  forget();
  const auto before = *state().profiles();
  box->advanceSeconds(1);
  state().applyProfile(id);
  EXPECT_EQ(*state().apps(), saved);
  EXPECT_EQ(*state().activeProfileID(), id);
  EXPECT_EQ(*state().profiles(), before) << "applying changes no date";
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.profiles", "quillmere.activeProfileID", "quillmere.appsState"));
  EXPECT_EQ(storedApps(), saved);
}

TEST_F(Profiles, OnlyThePlainGainsReachTheEngineEvenOfMutedAndRoutedApplications) {
  state().setGain(0.5F, spotify);
  state().toggleMute(spotify);
  state().setRouting("headset", editor);
  const auto id = add("Evening");
  state().applyProfile(id);
  settle();
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(editor, 1.0F), gainCall(spotify, 0.5F), gainCall(zoom, 1.0F)));
}

TEST_F(Profiles, ApplicationsWithoutAnEntryKeepTheirValuesAndStrangersAreIgnored) {
  const auto id = add("Three");
  box->launch(chrome, "Chrome");
  box->quit(zoom);
  box->detect();
  state().setGain(0.4F, chrome);
  state().applyProfile(id);
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 0.4F);
  EXPECT_EQ(box->app(zoom), std::nullopt);
}

TEST_F(Profiles, ANameAlwaysComesFromTheListAndNeverFromTheProfile) {
  const auto id = add("Names");
  box->workspace.setRunningApplications({{spotify, "Spotify Premium", box->pidOf(spotify)}});
  box->detect();
  state().applyProfile(id);
  EXPECT_EQ(box->app(spotify)->name, "Spotify Premium");
}

TEST_F(Profiles, TheListsOwnElementsMayNameTheProfile) {
  // The list that the id or the name is in goes while the operation changes it.
  static_cast<void>(add("A name that is too long to be kept in place"));
  const auto id = add("Another");
  const auto kept = state().profiles()->at(1).name;
  state().addProfile(state().profiles()->at(1).name);
  EXPECT_EQ(state().profiles()->back().name, kept);
  state().duplicateProfile(state().profiles()->at(2).id);
  EXPECT_EQ(state().profiles()->back().name, "Another Copy");
  state().applyProfile(state().profiles()->at(2).id);
  EXPECT_EQ(*state().activeProfileID(), id);
  state().applyProfile(**state().activeProfileID());
  EXPECT_EQ(*state().activeProfileID(), id);
  state().deleteProfile(**state().activeProfileID());
  EXPECT_EQ(*state().activeProfileID(), std::nullopt);
  EXPECT_EQ(state().profiles()->size(), 4U);
  state().deleteProfile(state().profiles()->front().id);
  EXPECT_EQ(state().profiles()->size(), 3U);
  EXPECT_EQ(state().profiles()->front().name, kept);
}

TEST_F(Profiles, AnObserverMayDeleteTheProfileThatIsBeingApplied) {
  const auto id = add("Evening");
  state().setGain(0.5F, spotify);
  const auto watch = state().apps().observe([this](const auto&) {
    if (state().profiles()->size() > 1) state().deleteProfile(state().profiles()->back().id);
  });
  state().applyProfile(state().profiles()->back().id);
  EXPECT_EQ(*state().activeProfileID(), id);
}

TEST_F(Profiles, TheActiveProfileStaysSetWhenTheLayoutNoLongerMatchesIt) {
  const auto id = add("Evening");
  state().applyProfile(id);
  state().setGain(0.2F, spotify);
  state().toggleWhisperMode();
  EXPECT_EQ(*state().activeProfileID(), id);
}

TEST_F(Profiles, ProfilesAndTheActiveOneSurviveARestartWhichAppliesNothing) {
  state().setGain(0.5F, spotify);
  state().setGain(0.4F, editor);
  const auto id = add("Evening");
  state().applyProfile(id);
  state().setGain(0.8F, spotify);
  state().setGain(1.0F, editor);
  const auto before = *state().profiles();
  restart({{spotify, "Spotify"}, {zoom, "Zoom"}, {editor, "Editor"}});
  EXPECT_EQ(*state().profiles(), before);
  EXPECT_EQ(*state().activeProfileID(), id);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.8F))) << "the list that was stored last, not the profile";
}

}  // namespace
}  // namespace quillmere
