// Desktop entries from folders of a test's own.
#include "platform/linux/applications/DesktopEntries.h"

#include <gtest/gtest.h>

#include "platform/linux/text/CleanText.h"
#include "support/TemporaryFolder.h"

namespace quillmere::applications {
namespace {

using quillmere::support::TemporaryFolder;

class DesktopEntriesTest : public ::testing::Test {
 protected:
  void add(const std::string& file, const std::string& keys) {
    folder_.write("share/applications/" + file, "[Desktop Entry]\nType=Application\n" + keys + "\n");
  }
  std::shared_ptr<const DesktopEntries> read(const std::string& searchPath = "/nowhere") {
    problems_.clear();
    return DesktopEntries::read({{folder_.path("home"), folder_.path("share")}, searchPath, desktops_},
                                [this](const std::string& problem) { problems_.push_back(problem); });
  }
  static std::string idOf(const DesktopEntry* entry) { return entry == nullptr ? "" : entry->id; }

  TemporaryFolder folder_;
  std::vector<std::string> desktops_{"LXQt"};
  std::vector<std::string> problems_;
};

TEST_F(DesktopEntriesTest, TellsNameIconAndProgram) {
  add("vlc.desktop", "Name=VLC media player\nIcon=vlc\nExec=/usr/bin/vlc --started-from-file %U\nStartupWMClass=vlc");
  const auto entries = read();
  const auto* entry = entries->byID("vlc");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->name, "VLC media player");
  EXPECT_EQ(entry->icon, IconReference(ThemedIcon{"vlc"}));
  EXPECT_EQ(entry->program.name, "vlc");
  EXPECT_TRUE(entry->isVisible);
}

TEST_F(DesktopEntriesTest, IconsAreNamesOrFiles) {
  add("a.desktop", "Name=A\nIcon=/opt/a/a.png");
  add("b.desktop", "Name=B\nIcon=b.png");
  add("c.desktop", "Name=C\nIcon=../c");
  add("d.desktop", "Name=D");
  const auto entries = read();
  EXPECT_EQ(entries->byID("a")->icon, IconReference(FileIcon{"/opt/a/a.png"}));
  EXPECT_EQ(entries->byID("b")->icon, IconReference(ThemedIcon{"b"}));
  EXPECT_EQ(entries->byID("c")->icon, std::nullopt);
  EXPECT_EQ(entries->byID("d")->icon, std::nullopt);
}

TEST_F(DesktopEntriesTest, FoldersBecomePartOfTheId) {
  add("kde/player.desktop", "Name=Player");
  EXPECT_NE(read()->byID("kde-player"), nullptr);
}

TEST_F(DesktopEntriesTest, TheUsersOwnEntryHidesTheSystems) {
  add("vlc.desktop", "Name=VLC");
  folder_.write("home/applications/vlc.desktop", "[Desktop Entry]\nType=Application\nName=My VLC\n");
  EXPECT_EQ(read()->byID("vlc")->name, "My VLC");
}

TEST_F(DesktopEntriesTest, AHiddenEntryTakesTheSystemsAway) {
  add("vlc.desktop", "Name=VLC\nExec=vlc");
  folder_.write("home/applications/vlc.desktop", "[Desktop Entry]\nType=Application\nHidden=true\n");
  const auto entries = read();
  EXPECT_EQ(entries->byID("vlc"), nullptr);
  EXPECT_EQ(entries->byProgram(programOf({"vlc"})), nullptr);
}

TEST_F(DesktopEntriesTest, NoDisplayIsKnownButNotVisible) {
  add("helper.desktop", "Name=Helper\nNoDisplay=true\nExec=helper");
  EXPECT_FALSE(read()->byID("helper")->isVisible);
}

TEST_F(DesktopEntriesTest, BrokenFilesAreReportedAndLeftOut) {
  folder_.write("share/applications/broken.desktop", "this is no key file\n\xFF\xFE");
  folder_.write("share/applications/empty.desktop", "");
  add("nameless.desktop", "Exec=foo");
  add("good.desktop", "Name=Good");
  const auto entries = read();
  EXPECT_EQ(entries->all().size(), 1U);
  EXPECT_NE(entries->byID("good"), nullptr);
  ASSERT_EQ(problems_.size(), 1U) << "one line, however much is left out";
  EXPECT_TRUE(problems_[0].starts_with("2 desktop entries left out: "))
      << "an empty file is no application: no problem";
  EXPECT_NE(problems_[0].find("/broken.desktop: "), std::string::npos);
  EXPECT_NE(problems_[0].find("/nameless.desktop: no name"), std::string::npos);
}

TEST_F(DesktopEntriesTest, AHugeFileIsLeftOut) {
  add("huge.desktop", "Name=Huge\nComment=" + std::string(std::size_t{2} * 1024 * 1024, 'x'));
  EXPECT_EQ(read()->byID("huge"), nullptr);
  EXPECT_EQ(problems_.size(), 1U);
}

TEST_F(DesktopEntriesTest, AnEndlessNameIsCut) {
  add("long.desktop", "Name=" + std::string(4096, 'n'));
  EXPECT_EQ(read()->byID("long")->name, std::string(maxDisplayNameBytes, 'n'));
}

TEST_F(DesktopEntriesTest, MissingFoldersAreNothing) {
  const auto entries = DesktopEntries::read({{"/nowhere/at/all"}, "", {}}, [](const std::string&) { FAIL(); });
  EXPECT_TRUE(entries->all().empty());
}

TEST_F(DesktopEntriesTest, SpellingInAnotherCaseIsFoundWhereThereIsNoExactOne) {
  add("org.gnome.Totem.desktop", "Name=Videos");
  const auto entries = read();
  EXPECT_EQ(idOf(entries->byID("org.gnome.totem")), "org.gnome.Totem");
  EXPECT_EQ(entries->byID("org.gnome.Tot"), nullptr);
}

TEST_F(DesktopEntriesTest, AProgramIsFoundByFileByNameAndByItsOwnFolder) {
  folder_.write("opt/chrome/google-chrome", "#!/bin/sh");
  folder_.link("bin/google-chrome-stable", folder_.path("opt/chrome/google-chrome"));
  add("google-chrome.desktop", "Name=Chrome\nExec=google-chrome-stable %U");
  const auto entries = read(folder_.path("bin"));
  EXPECT_EQ(idOf(entries->byProgram(programOf({folder_.path("opt/chrome/google-chrome")}))), "google-chrome");
  EXPECT_EQ(idOf(entries->byProgram(programOf({"/elsewhere/google-chrome-stable"}))), "google-chrome");
  EXPECT_EQ(idOf(entries->byProgram(programOf({folder_.path("opt/chrome/chrome")}))), "google-chrome");
}

TEST_F(DesktopEntriesTest, CommonFoldersTellNothing) {
  folder_.write("usr/bin/player", "");
  add("player.desktop", "Name=Player\nExec=" + folder_.path("usr/bin/player"));
  EXPECT_EQ(read()->byProgram(programOf({folder_.path("usr/bin/other")})), nullptr);
}

TEST_F(DesktopEntriesTest, ThePlainestEntryStandsForAProgram) {
  add("suite-writer.desktop", "Name=Writer\nExec=suite --writer %U");
  add("suite-start.desktop", "Name=Suite\nExec=suite %U");
  add("suite.desktop", "Name=Hidden Suite\nNoDisplay=true\nExec=suite");
  EXPECT_EQ(idOf(read()->byProgram(programOf({"suite"}))), "suite-start");
}

TEST_F(DesktopEntriesTest, InterpretersAndSandboxesAreNoPrograms) {
  add("python3.11.desktop", "Name=Python\nExec=/usr/bin/python3.11");
  add("com.spotify.Client.desktop",
      "Name=Spotify\nExec=/usr/bin/flatpak run com.spotify.Client\nX-Flatpak=com.spotify.Client");
  const auto entries = read();
  EXPECT_EQ(entries->byProgram(programOf({"python3.11"})), nullptr);
  EXPECT_EQ(entries->byProgram(programOf({"flatpak"})), nullptr);
  EXPECT_EQ(idOf(entries->bySandboxID("com.spotify.Client")), "com.spotify.Client");
}

TEST_F(DesktopEntriesTest, WindowClassIsFoundIgnoringCase) {
  add("jetbrains.desktop", "Name=Idea\nStartupWMClass=JetBrains-Idea");
  EXPECT_EQ(idOf(read()->byWindowClass("jetbrains-idea")), "jetbrains");
  EXPECT_EQ(read()->byWindowClass(""), nullptr);
}

TEST_F(DesktopEntriesTest, TerminalsAndDevelopmentEnvironmentsHostOthers) {
  add("konsole.desktop", "Name=Konsole\nCategories=Qt;System;TerminalEmulator;");
  add("code.desktop", "Name=Code\nCategories=TextEditor;Development;IDE");
  add("vlc.desktop", "Name=VLC\nCategories=AudioVideo;Player;");
  const auto entries = read();
  EXPECT_TRUE(entries->byID("konsole")->hostsOthers);
  EXPECT_TRUE(entries->byID("code")->hostsOthers);
  EXPECT_FALSE(entries->byID("vlc")->hostsOthers);
}

}  // namespace
}  // namespace quillmere::applications
