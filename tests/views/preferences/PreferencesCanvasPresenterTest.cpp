// What the page of the preferences shows.
#include "views/preferences/PreferencesCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class PreferencesPage : public ViewsFixture {
 protected:
  void make() {
    page = std::make_unique<PreferencesCanvasPresenter>(services());
    settle();
  }
  void TearDown() override { page.reset(); }
  [[nodiscard]] PermissionPresenter& accessibility() const { return *page->permissions()->accessibility(); }
  [[nodiscard]] PermissionPresenter& focusStatus() const { return *page->permissions()->focusStatus(); }

  std::unique_ptr<PreferencesCanvasPresenter> page;
};

TEST_F(PreferencesPage, SettingsAreOnAtFirstAndWrittenThrough) {
  startViews();
  make();
  EXPECT_TRUE(page->scrollAdjusts());
  EXPECT_TRUE(page->showsDuckBanner());
  EXPECT_TRUE(page->pausesOnDisconnect());
  page->setScrollAdjusts(false);
  page->setShowsDuckBanner(false);
  page->setPausesOnDisconnect(false);
  EXPECT_EQ(disk.boolean("scrollOverRowAdjustsVolume"), false);
  EXPECT_EQ(disk.boolean("showDuckBanner"), false);
  EXPECT_EQ(disk.boolean("quillmere.pauseOnHeadphoneDisconnect"), false);
  EXPECT_FALSE(page->scrollAdjusts());
  EXPECT_FALSE(page->showsDuckBanner());
  EXPECT_FALSE(page->pausesOnDisconnect());
}

TEST_F(PreferencesPage, LoginSwitchShowsWhatTheSystemSays) {
  startViews();
  desktop.loginItem.setStatus(LoginItemStatus::enabled);
  make();
  EXPECT_TRUE(page->launchAtLogin()->isOn());
}

TEST_F(PreferencesPage, LoginItemThatWantsAnApprovalIsOff) {
  startViews();
  desktop.loginItem.setStatus(LoginItemStatus::requiresApproval);
  make();
  EXPECT_FALSE(page->launchAtLogin()->isOn());
}

TEST_F(PreferencesPage, LoginSwitchRegistersAndUnregisters) {
  startViews();
  make();
  page->launchAtLogin()->setOn(true);
  settle();
  EXPECT_EQ(desktop.loginItem.status(), LoginItemStatus::enabled);
  EXPECT_TRUE(page->launchAtLogin()->isOn());
  page->launchAtLogin()->setOn(false);
  settle();
  EXPECT_EQ(desktop.loginItem.status(), LoginItemStatus::notRegistered);
  EXPECT_FALSE(page->launchAtLogin()->isOn());
}

TEST_F(PreferencesPage, LoginSwitchSnapsBackWhereTheSystemDoesNotFollow) {
  startViews();
  desktop.loginItem.ignoreChanges();
  make();
  page->launchAtLogin()->setOn(true);
  settle();
  EXPECT_FALSE(page->launchAtLogin()->isOn());
}

TEST_F(PreferencesPage, LoginSwitchSnapsBackAfterAFailureWhichIsLogged) {
  startViews();
  desktop.loginItem.failWith("no room");
  make();
  page->launchAtLogin()->setOn(true);
  settle();
  EXPECT_FALSE(page->launchAtLogin()->isOn());
  EXPECT_TRUE(std::ranges::any_of(
      box->log.lines(), [](const auto& line) { return line.message == "LaunchAtLogin toggle failed: no room"; }));
}

TEST_F(PreferencesPage, LoginSwitchIsReadAgainWhenThePageReopens) {
  startViews();
  make();
  EXPECT_FALSE(page->launchAtLogin()->isOn());
  page.reset();
  desktop.loginItem.setStatus(LoginItemStatus::enabled);
  make();
  EXPECT_TRUE(page->launchAtLogin()->isOn());
}

TEST_F(PreferencesPage, PermissionsSayWhatTheyAre) {
  startViews();
  make();
  EXPECT_EQ(accessibility().status(), PermissionPresenter::NotDetermined);
  EXPECT_EQ(accessibility().text(), "Grant");
  EXPECT_EQ(focusStatus().text(), "Grant");
  desktop.permissions.setTrusted(true);
  desktop.permissions.setFocus(FocusAuthorization::denied);
  box->advanceSeconds(0.6);
  EXPECT_TRUE(accessibility().isGranted());
  EXPECT_EQ(accessibility().text(), "Granted");
  EXPECT_EQ(focusStatus().status(), PermissionPresenter::Denied);
  EXPECT_EQ(focusStatus().text(), "Open Settings");
  desktop.permissions.setFocus(FocusAuthorization::authorized);
  box->advanceSeconds(0.6);
  EXPECT_EQ(focusStatus().text(), "Granted");
}

TEST_F(PreferencesPage, PermissionThatIsTakenBackWhileThePageIsOpenIsSeen) {
  startViews();
  desktop.permissions.setTrusted(true);
  desktop.permissions.setFocus(FocusAuthorization::authorized);
  make();
  EXPECT_TRUE(accessibility().isGranted());
  desktop.permissions.setTrusted(false);
  desktop.permissions.setFocus(FocusAuthorization::restricted);
  box->advanceSeconds(0.6);
  EXPECT_EQ(accessibility().status(), PermissionPresenter::NotDetermined);
  EXPECT_EQ(focusStatus().status(), PermissionPresenter::Denied);
}

TEST_F(PreferencesPage, GrantingAccessibilityAsksAndOpensTheSettings) {
  startViews();
  make();
  accessibility().grant();
  EXPECT_EQ(desktop.permissions.prompts(), 1);
  EXPECT_EQ(desktop.permissions.opened(), std::vector<std::string>{"Privacy_Accessibility"});
}

TEST_F(PreferencesPage, GrantingFocusStatusAsksAndOpensTheSettings) {
  startViews();
  make();
  focusStatus().grant();
  EXPECT_EQ(desktop.permissions.openQuestions(), 1U);
  EXPECT_EQ(desktop.permissions.opened(), std::vector<std::string>{"Privacy_FocusStatus"});
  desktop.permissions.answerFocus(FocusAuthorization::authorized);
  settle();
  EXPECT_TRUE(focusStatus().isGranted());
}

TEST_F(PreferencesPage, DeniedPermissionOpensTheSettingsByTheSameAction) {
  startViews();
  desktop.permissions.setFocus(FocusAuthorization::denied);
  make();
  focusStatus().grant();
  EXPECT_EQ(desktop.permissions.opened(), std::vector<std::string>{"Privacy_FocusStatus"});
}

TEST_F(PreferencesPage, WithoutSettingsToOpenAPermissionSaysHowItComesUntilItHasCome) {
  startViews();
  make();
  desktop.permissions.setHasSettings(false);
  EXPECT_EQ(focusStatus().hint(), "");
  QSignalSpy told(&focusStatus(), &PermissionPresenter::statusChanged);
  focusStatus().grant();
  EXPECT_EQ(told.count(), 1);
  EXPECT_TRUE(focusStatus().hint().contains("do-not-disturb")) << focusStatus().hint().toStdString();
  EXPECT_EQ(accessibility().hint(), "") << "nobody has asked for that one";
  desktop.permissions.answerFocus(FocusAuthorization::authorized);
  settle();
  EXPECT_EQ(focusStatus().hint(), "");
  desktop.permissions.setFocus(FocusAuthorization::notDetermined);
  desktop.permissions.setHasSettings(true);
  box->advanceSeconds(0.6);
  focusStatus().grant();
  EXPECT_EQ(focusStatus().hint(), "") << "now there is something to see";
}

TEST_F(PreferencesPage, PermissionsAreReadOnlyWhileThePageShows) {
  startViews();
  make();
  const auto before = desktop.permissions.reads();
  box->advanceSeconds(2);
  EXPECT_GE(desktop.permissions.reads(), before + 3);
  page.reset();
  settle();
  const auto after = desktop.permissions.reads();
  box->advanceSeconds(5);
  EXPECT_EQ(desktop.permissions.reads(), after);
}

TEST_F(PreferencesPage, MissingPartsOfTheVersionAreDashes) {
  EXPECT_EQ(versionText("1.2", "345"), "1.2 (345)");
  EXPECT_EQ(versionText("1.2", ""), "1.2 (—)");
  EXPECT_EQ(versionText("", ""), "— (—)");
}

TEST_F(PreferencesPage, WebsiteAndFeedbackAreHandedToTheDesktop) {
  startViews();
  make();
  page->openWebsite();
  page->sendFeedback();
  settle();
  const auto opened = desktop.workspace.openedURLs();
  ASSERT_EQ(opened.size(), 2U);
  EXPECT_TRUE(opened[0].starts_with("https://"));
  EXPECT_TRUE(opened[1].starts_with("mailto:"));
  EXPECT_TRUE(opened[1].ends_with("?subject=quillmere%20feedback"));
}

}  // namespace
}  // namespace quillmere
