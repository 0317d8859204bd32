// Command lines: wrappers, interpreters, launchers.
#include "platform/linux/applications/CommandLine.h"

#include <gtest/gtest.h>

namespace quillmere::applications {
namespace {

std::string nameOf(const std::vector<std::string>& words, std::string_view executable = {}) {
  const auto program = programOf(words, executable);
  return program.isAnonymous ? "(" + program.name + ")" : program.name;
}

TEST(ExecKey, FieldCodesAreLeftOut) {
  EXPECT_EQ(wordsOfExec("spotify --uri=%u %U"), (std::vector<std::string>{"spotify", "--uri=%u"}));
}

TEST(ExecKey, QuotesHoldWordsTogether) {
  EXPECT_EQ(wordsOfExec("\"/opt/My Player/player\" %F"), (std::vector<std::string>{"/opt/My Player/player"}));
}

TEST(ExecKey, ABrokenKeyHasNoWords) {
  EXPECT_TRUE(wordsOfExec("player \"unfinished").empty());
  EXPECT_TRUE(wordsOfExec("").empty());
  EXPECT_TRUE(wordsOfExec(std::string(100000, 'x')).empty());
}

TEST(ProgramOf, APlainProgramIsItself) {
  EXPECT_EQ(programOf({"/usr/bin/mpv", "a.ogg"}), (Program{"/usr/bin/mpv", "mpv", false}));
}

TEST(ProgramOf, TheExecutableCountsBeforeTheWord) {
  EXPECT_EQ(programOf({"renamed"}, "/opt/zoom/zoom"), (Program{"/opt/zoom/zoom", "zoom", false}));
}

TEST(ProgramOf, WrappersAreLookedThrough) {
  EXPECT_EQ(nameOf({"env", "GDK_BACKEND=x11", "-u", "FOO", "spotify"}), "spotify");
  EXPECT_EQ(nameOf({"/usr/bin/nice", "-n", "5", "mpv"}), "mpv");
  EXPECT_EQ(nameOf({"prime-run", "gamemoderun", "game"}), "game");
  EXPECT_EQ(nameOf({"env", "A=1", "B=2"}), "(env)");
}

TEST(ProgramOf, InterpretersGoByTheirScript) {
  EXPECT_EQ(nameOf({"python3.11", "-u", "/usr/bin/quodlibet"}), "quodlibet");
  EXPECT_EQ(nameOf({"/usr/bin/python3", "/opt/radio/radio.py", "--tray"}), "radio");
  EXPECT_EQ(nameOf({"python3", "-m", "mopidy"}), "mopidy");
  EXPECT_EQ(nameOf({"perl", "/usr/bin/gmusicbrowser"}), "gmusicbrowser");
  EXPECT_EQ(nameOf({"gjs-console", "/usr/bin/org.gnome.Decibels"}), "org.gnome.Decibels");
  EXPECT_EQ(nameOf({"node", "/opt/player/index.js"}), "player");
  EXPECT_EQ(nameOf({"sh", "/usr/bin/launch-it"}), "launch-it");
}

TEST(ProgramOf, AnInterpreterAloneNamesNobody) {
  EXPECT_EQ(nameOf({"python3"}), "(python3)");
  EXPECT_EQ(nameOf({"python3", "-c", "import this"}), "(python3)");
  EXPECT_EQ(nameOf({"node", "-e", "1"}), "(node)");
  EXPECT_EQ(nameOf({"bash"}), "(bash)");
}

TEST(ProgramOf, AShellsCommandIsLookedInto) {
  EXPECT_EQ(nameOf({"sh", "-c", "exec mpv --idle"}), "mpv");
  EXPECT_EQ(nameOf({"sh", "-c", "sh -c sh"}), "(sh)");
}

TEST(ProgramOf, ASharedElectronGoesByItsApplication) {
  EXPECT_EQ(nameOf({"/usr/lib/electron28/electron", "/usr/lib/slack/app.asar"}), "slack");
  EXPECT_EQ(nameOf({"electron", "--ozone-platform=x11", "/opt/tidal-hifi/resources/app.asar"}), "tidal-hifi");
  EXPECT_EQ(nameOf({"/usr/lib/electron/electron", "--type=utility"}), "(electron)");
}

TEST(ProgramOf, JavaGoesByItsArchiveOrMainClass) {
  EXPECT_EQ(nameOf({"java", "-Xmx1g", "-jar", "/opt/jukebox/jukebox.jar"}), "jukebox");
  EXPECT_EQ(nameOf({"java", "-cp", "a.jar:b.jar", "org.example.jukebox.Main"}), "jukebox");
  EXPECT_EQ(nameOf({"java", "-cp", "a.jar", "org.example.Jukebox"}), "Jukebox");
  EXPECT_EQ(nameOf({"java", "-version"}), "(java)");
}

TEST(ProgramOf, AWindowsProgramGoesByItsOwnName) {
  EXPECT_EQ(nameOf({"C:\\Games\\Foo\\Foo.exe", "-windowed"}, "/usr/lib/wine/wine64-preloader"), "Foo");
  EXPECT_EQ(nameOf({"wine", "/home/u/Bar.EXE"}), "Bar");
}

TEST(ProgramOf, SandboxLaunchersNameNobody) {
  EXPECT_EQ(nameOf({"/usr/bin/flatpak", "run", "org.videolan.VLC"}), "(flatpak)");
  EXPECT_EQ(nameOf({"bwrap", "--args", "40", "spotify"}), "(bwrap)");
}

TEST(ProgramOf, NothingIsNobody) {
  EXPECT_EQ(nameOf({}), "()");
  EXPECT_EQ(nameOf({""}), "()");
  EXPECT_EQ(nameOf({}, "/usr/bin/mpv"), "mpv");
}

TEST(FlatpakCommand, IsReadThroughItsOptions) {
  EXPECT_EQ(flatpakIDOf({"/usr/bin/flatpak", "run", "--branch=stable", "--command=spotify", "com.spotify.Client"}),
            "com.spotify.Client");
  EXPECT_EQ(flatpakIDOf({"flatpak", "list"}), "");
  EXPECT_EQ(flatpakIDOf({"mpv", "run", "a.b.c"}), "");
}

TEST(Interpreters, AreKnownWithAndWithoutVersion) {
  for (const auto* name :
       {"python3", "python3.11", "bash", "java", "electron", "electron28", "node", "wine64-preloader"}) {
    EXPECT_TRUE(isInterpreter(name)) << name;
  }
  for (const auto* name : {"mpv", "spotify", "pw-cat", "vlc", "", "3"}) EXPECT_FALSE(isInterpreter(name)) << name;
}

}  // namespace
}  // namespace quillmere::applications
