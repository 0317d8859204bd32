// The portal's dialogue, the desktop's permissions and the sandbox's login item, against a desktop of the test's own.
#include "platform/linux/LinuxDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/linux/LinuxApplicationChooser.h"
#include "platform/linux/LinuxPermissions.h"
#include "platform/linux/PortalLoginItem.h"
#include "platform/linux/portal/Portal.h"
#include "platform/memory/MemoryApplicationChooser.h"
#include "platform/memory/MemoryLoginItem.h"
#include "runtime/ThreadPoolExecutor.h"
#include "support/FakeDesktop.h"
#include "support/PostBox.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"
#include "tests/platform/contract/ApplicationChooserContract.h"
#include "tests/platform/contract/LoginItemContract.h"
#include "tests/platform/contract/PermissionsContract.h"

namespace quillmere {
namespace {

using support::FakeDesktop;
using support::PostBox;
using support::PrivateBus;
using ::testing::HasSubstr;
using Names = std::vector<std::string>;

/// A bus with a desktop on it, and a main thread that runs when the test says so.
class DesktopMachine {
 public:
  bool becomes(const std::function<bool()>& condition) { return main.becomes(condition); }

  PrivateBus bus;
  FakeDesktop desktop{bus.address()};
  PostBox main;
  ThreadPoolExecutor background{1};
  SystemClocks clocks;
  support::RecordingLogSink log;
  Runtime runtime{main, background, clocks, log, makeThreadSerialQueue};
  std::shared_ptr<portal::Portal> portal = std::make_shared<portal::Portal>(bus.address());
};

// --- the dialogue

class ChooserHost : public DesktopMachine {
 public:
  ChooserHost() { desktop.comeAsPortal(); }
  ApplicationChooser& chooser() { return chooser_; }
  void answer(const std::optional<std::string>& path) {
    if (!path) {
      desktop.answerFile(std::nullopt);
      return;
    }
    char* uri = g_filename_to_uri(path->c_str(), nullptr, nullptr);
    desktop.answerFile(std::string(uri));
    g_free(uri);
  }
  [[nodiscard]] int dialogues() const { return desktop.dialogues(); }

 private:
  LinuxApplicationChooser chooser_{portal, runtime, nullptr};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ApplicationChooserContract, ChooserHost);

class ChooserTest : public ::testing::Test, protected DesktopMachine {
 protected:
  ChooserTest() {
    auto made = std::make_unique<MemoryApplicationChooser>();
    dialogue = made.get();
    chooser = std::make_unique<LinuxApplicationChooser>(portal, runtime, std::move(made));
  }
  void ask() {
    chooser->choose({"Ein Programm wählen", "Anwendungen"}, [this](std::optional<std::string> path) {
      answer = std::move(path);
      ++answers;
    });
  }

  MemoryApplicationChooser* dialogue = nullptr;
  std::unique_ptr<LinuxApplicationChooser> chooser;
  std::optional<std::string> answer;
  int answers = 0;
};

TEST_F(ChooserTest, ThePortalIsAskedForOneDesktopEntryWhereTheyAreKept) {
  desktop.comeAsPortal();
  ask();
  ASSERT_TRUE(becomes([this] { return desktop.dialogues() == 1; }));
  const auto question = desktop.lastFileQuestion();
  EXPECT_THAT(question, HasSubstr("'Ein Programm wählen'"));
  EXPECT_THAT(question, HasSubstr("'multiple': <false>"));
  EXPECT_THAT(question, HasSubstr("'directory': <false>"));
  EXPECT_THAT(question, HasSubstr("('Anwendungen', [(uint32 0, '*.desktop'), (1, 'application/x-desktop')])"));
  EXPECT_THAT(question, HasSubstr("'current_folder': <b'/usr/share/applications'>"));
}

TEST_F(ChooserTest, WithoutAPortalTheToolkitsDialogueIsAsked) {
  ask();
  ASSERT_TRUE(becomes([this] { return dialogue->isOpen(); }));
  EXPECT_EQ(dialogue->questions(), (std::vector<ApplicationQuestion>{{"Ein Programm wählen", "Anwendungen"}}));
  dialogue->answer("/a.desktop");
  EXPECT_EQ(answer, "/a.desktop");
}

TEST_F(ChooserTest, APortalWithoutThatDialogueIsNone) {
  desktop.comeAsPortal();
  desktop.refuseFiles();
  ask();
  EXPECT_TRUE(becomes([this] { return dialogue->isOpen(); }));
}

TEST_F(ChooserTest, WithoutABusTheToolkitsDialogueIsAsked) {
  bus.stop();
  ask();
  EXPECT_TRUE(becomes([this] { return dialogue->isOpen(); }));
}

TEST_F(ChooserTest, ABusThatGoesWhileTheDialogueIsOpenLeavesNobodyWaiting) {
  desktop.comeAsPortal();
  ask();
  ASSERT_TRUE(becomes([this] { return desktop.dialogues() == 1; }));
  bus.stop();
  EXPECT_TRUE(becomes([this] { return dialogue->isOpen(); }));
}

TEST_F(ChooserTest, AnOldPortalsOwnHandleIsHeard) {
  desktop.comeAsPortal();
  desktop.chooseHandles();
  ask();
  // The reply with the handle may still be on its way when the user answers.
  ASSERT_TRUE(becomes([this] { return desktop.dialogues() == 1; }));
  ASSERT_TRUE(becomes([this] {
    desktop.answerFile("file:///a.desktop");
    return answers == 1;
  }));
  EXPECT_EQ(answer, "/a.desktop");
}

TEST_F(ChooserTest, WhatIsNoFileHereIsNothing) {
  desktop.comeAsPortal();
  int dialogues = 0;
  for (const auto* uri : {"https://example.org/a.desktop", "rubbish", "", "file://elsewhere/a.desktop"}) {
    answer = "before";
    ask();
    ++dialogues;
    ASSERT_TRUE(becomes([&] { return desktop.dialogues() == dialogues; }));
    desktop.answerFile(std::string(uri));
    ASSERT_TRUE(becomes([&] { return answers == dialogues; })) << uri;
    EXPECT_EQ(answer, std::nullopt) << uri;
  }
}

TEST_F(ChooserTest, ADialogueThatEndsInAnotherWayChoosesNothing) {
  desktop.comeAsPortal();
  ask();
  ASSERT_TRUE(becomes([this] { return desktop.dialogues() == 1; }));
  desktop.answerFile(std::nullopt, 2);
  ASSERT_TRUE(becomes([this] { return answers == 1; }));
  EXPECT_EQ(answer, std::nullopt);
  EXPECT_FALSE(dialogue->isOpen()) << "the user has seen one dialogue";
}

TEST_F(ChooserTest, WhoGoesIsNotAnswered) {
  desktop.comeAsPortal();
  ask();
  ASSERT_TRUE(becomes([this] { return desktop.dialogues() == 1; }));
  chooser.reset();
  desktop.answerFile("file:///a.desktop");
  portal.reset();
  main.run();
  EXPECT_EQ(answers, 0);
}

// --- permissions

class PermissionsHost : public DesktopMachine {
 public:
  Permissions& permissions() { return permissions_; }
  void grant() {
    desktop.offerShortcuts(true);
    desktop.comeAsPortal();
    desktop.comeAsNotifications();
  }

 private:
  LinuxPermissions permissions_{portal, runtime, {Names{"sway"}, false}};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, PermissionsContract, PermissionsHost);

class LinuxPermissionsTest : public ::testing::Test, protected DesktopMachine {
 protected:
  LinuxPermissions& on(Names desktops, bool isX11) {
    permissions.emplace(portal, runtime, LinuxPermissionsOptions{std::move(desktops), isX11});
    return *permissions;
  }
  /// Lets one look come to its end.
  void look() {
    bool looked = false;
    permissions->requestFocusAuthorization([&] { looked = true; });
    EXPECT_TRUE(becomes([&] { return looked; }));
  }
  FocusAuthorization focus() {
    look();
    return static_cast<FocusAuthorization>(permissions->focusAuthorization());
  }

  std::optional<LinuxPermissions> permissions;
};

TEST_F(LinuxPermissionsTest, OnX11EveryProgramMayTakePartInTheKeyboard) {
  EXPECT_TRUE(on({"XFCE"}, true).isProcessTrusted());
}

TEST_F(LinuxPermissionsTest, OnWaylandThePortalHandsOutShortcutsOrNobodyDoes) {
  desktop.comeAsPortal();
  on({"sway"}, false);
  look();
  EXPECT_FALSE(permissions->isProcessTrusted());
  desktop.offerShortcuts(true);
  look();
  EXPECT_TRUE(permissions->isProcessTrusted());
  desktop.leaveAsPortal();
  look();
  EXPECT_FALSE(permissions->isProcessTrusted());
}

TEST_F(LinuxPermissionsTest, FocusIsAuthorisedWhereTheDesktopTellsOfIt) {
  on({"KDE"}, true);
  EXPECT_EQ(focus(), FocusAuthorization::notDetermined) << "no notifications yet";
  desktop.comeAsNotifications();
  EXPECT_EQ(focus(), FocusAuthorization::authorized);
  desktop.tellInhibited(false);
  EXPECT_EQ(focus(), FocusAuthorization::notDetermined);
}

TEST_F(LinuxPermissionsTest, FocusIsDeniedWhereTheBusForbidsToAsk) {
  desktop.comeAsNotifications();
  desktop.forbid();
  on({"KDE"}, true);
  EXPECT_EQ(focus(), FocusAuthorization::denied);
}

TEST_F(LinuxPermissionsTest, WithoutABusNothingIsKnown) {
  bus.stop();
  on({"sway"}, false);
  EXPECT_EQ(focus(), FocusAuthorization::notDetermined);
  EXPECT_FALSE(permissions->isProcessTrusted());
}

TEST_F(LinuxPermissionsTest, AReadNeverWaitsAndANewAnswerIsTold) {
  desktop.comeAsNotifications();
  on({"KDE"}, true);
  int told = 0;
  permissions->onChanged([&] { ++told; });
  EXPECT_EQ(permissions->focusAuthorization(), 0);
  EXPECT_TRUE(becomes([&] { return told == 1; }));
  EXPECT_EQ(permissions->focusAuthorization(), 3);
  look();
  EXPECT_EQ(told, 1) << "the same answer is not told again";
}

TEST_F(LinuxPermissionsTest, AnAnswerForWhoHasGoneIsNobodys) {
  desktop.comeAsNotifications();
  on({"KDE"}, true);
  bool answered = false;
  permissions->requestFocusAuthorization([&] { answered = true; });
  permissions.reset();
  portal.reset();
  main.run();
  EXPECT_FALSE(answered);
}

TEST_F(LinuxPermissionsTest, EachDesktopHasItsSettings) {
  EXPECT_EQ(settingsCommand("Privacy_Accessibility", {"ubuntu", "GNOME"}), (Names{"gnome-control-center", "keyboard"}));
  EXPECT_EQ(settingsCommand("Privacy_FocusStatus", {"KDE"}), (Names{"systemsettings", "kcm_notifications"}));
  EXPECT_EQ(settingsCommand("Privacy_FocusStatus", {"XFCE"}), Names{"xfce4-notifyd-config"});
  EXPECT_EQ(settingsCommand("Privacy_Accessibility", {"LXQt"}), Names{"lxqt-config-globalkeyshortcuts"});
  EXPECT_EQ(settingsCommand("Privacy_Other", {"GNOME"}), Names{});
  EXPECT_EQ(settingsCommand("Privacy_Accessibility", {"sway"}), Names{});
  EXPECT_EQ(settingsCommand("Privacy_Accessibility", {}), Names{});
}

TEST_F(LinuxPermissionsTest, ADesktopWithoutSettingsIsLogged) {
  EXPECT_FALSE(on({"sway"}, false).openSettings("Privacy_Accessibility"));
  EXPECT_EQ(log.count("this desktop has no settings for Privacy_Accessibility"), 1);
}

// --- the login item of a sandbox

class PortalLoginItemHost : public DesktopMachine {
 public:
  PortalLoginItemHost() { desktop.comeAsPortal(); }
  LoginItem& item() { return item_; }

 private:
  PortalLoginItem item_{portal, nullptr};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Portal, LoginItemContract, PortalLoginItemHost);

class PortalLoginItemTest : public ::testing::Test, protected DesktopMachine {};

TEST_F(PortalLoginItemTest, ThePortalIsToldWhatToStart) {
  desktop.comeAsPortal();
  PortalLoginItem item(portal, nullptr);
  ASSERT_EQ(item.registerItem(), std::nullopt);
  EXPECT_THAT(desktop.lastAutostart(), HasSubstr("'autostart': <true>"));
  EXPECT_THAT(desktop.lastAutostart(), HasSubstr("['quillmere', '--background']"));
}

TEST_F(PortalLoginItemTest, APortalThatDoesOtherwiseIsAFailure) {
  desktop.comeAsPortal();
  desktop.setAutostart(false);
  PortalLoginItem item(portal, nullptr);
  EXPECT_EQ(item.registerItem(), "the portal does otherwise");
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItemTest, AUserWhoDoesNotPermitItIsAFailure) {
  desktop.comeAsPortal();
  desktop.setAutostart(std::nullopt, 1);
  PortalLoginItem item(portal, nullptr);
  EXPECT_EQ(item.registerItem(), "the user does not permit it");
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(PortalLoginItemTest, WithoutAPortalItFails) {
  PortalLoginItem item(portal, nullptr);
  EXPECT_EQ(item.registerItem(), "there is no portal for it");
}

TEST_F(PortalLoginItemTest, APortalThatHangsIsGivenUp) {
  desktop.comeAsPortal();
  desktop.hang();
  PortalLoginItem item(portal, nullptr, std::chrono::milliseconds(50));
  EXPECT_EQ(item.registerItem(), "the portal does not answer");
}

TEST_F(PortalLoginItemTest, TheHostsOwnEntryCountsWhereItCanBeSeen) {
  auto outside = std::make_unique<MemoryLoginItem>();
  auto* host = outside.get();
  PortalLoginItem item(portal, std::move(outside));
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  host->setStatus(LoginItemStatus::enabled);
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

// --- all of it

TEST(LinuxDesktop, HasOneOfEachWithoutABus) {
  PostBox main;
  ThreadPoolExecutor background(1);
  SystemClocks clocks;
  support::RecordingLogSink log;
  const Runtime runtime{main, background, clocks, log, makeThreadSerialQueue};
  LinuxDesktopOptions options;
  options.applications.procRoot = "/nowhere";
  options.applications.dataFolders = {"/nowhere"};
  options.busAddress = "";
  const auto desktop = makeLinuxDesktop(runtime, std::move(options));
  EXPECT_EQ(desktop.workspace->installedApplication("org.example.None"), std::nullopt);
  EXPECT_EQ(desktop.permissions->focusAuthorization(), 0);
  std::optional<std::string> answer = "before";
  desktop.applicationChooser->choose({"Browse", "Applications"},
                                     [&](std::optional<std::string> path) { answer = std::move(path); });
  EXPECT_TRUE(main.becomes([&] { return !answer; }));
  EXPECT_NE(desktop.loginItem, nullptr);
  background.shutDown();
}

}  // namespace
}  // namespace quillmere
