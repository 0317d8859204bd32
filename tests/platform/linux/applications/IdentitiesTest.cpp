// The table of well-known applications.
#include "platform/linux/applications/Identities.h"

#include <gtest/gtest.h>

#include <array>

#include "core/DuckRule.h"

namespace quillmere::applications {
namespace {

using Pair = std::array<const char*, 2>;

class KnownDesktopID : public ::testing::TestWithParam<Pair> {};

TEST_P(KnownDesktopID, HasTheIdentifierOfTheMixersTables) {
  const auto [desktopID, bundleID] = GetParam();
  EXPECT_EQ(Identities::builtIn().forDesktopID(desktopID), bundleID) << desktopID;
}

INSTANTIATE_TEST_SUITE_P(
    Table, KnownDesktopID,
    ::testing::Values(Pair{"spotify", "com.spotify.client"}, Pair{"com.spotify.Client", "com.spotify.client"},
                      Pair{"spotify_spotify", "com.spotify.client"}, Pair{"us.zoom.Zoom", "us.zoom.xos"},
                      Pair{"zoom", "us.zoom.xos"}, Pair{"com.slack.Slack", "com.tinyspeck.slackmacgap"},
                      Pair{"slack", "com.tinyspeck.slackmacgap"}, Pair{"com.discordapp.Discord", "com.hnc.Discord"},
                      Pair{"discord", "com.hnc.Discord"}, Pair{"google-chrome", "com.google.Chrome"},
                      Pair{"com.google.Chrome", "com.google.Chrome"}, Pair{"chromium", "com.google.Chrome"},
                      Pair{"org.chromium.Chromium", "com.google.Chrome"}, Pair{"brave-browser", "com.brave.Browser"},
                      Pair{"com.brave.Browser", "com.brave.Browser"}, Pair{"microsoft-edge", "com.microsoft.edgemac"},
                      Pair{"com.microsoft.Edge", "com.microsoft.edgemac"}, Pair{"firefox", "org.mozilla.firefox"},
                      Pair{"org.mozilla.firefox", "org.mozilla.firefox"}, Pair{"firefox-esr", "org.mozilla.firefox"},
                      Pair{"firefox_firefox", "org.mozilla.firefox"},
                      Pair{"org.telegram.desktop", "com.tdesktop.Telegram"},
                      Pair{"teams-for-linux", "com.microsoft.teams2"},
                      Pair{"com.github.IsmaelMartinez.teams_for_linux", "com.microsoft.teams2"},
                      Pair{"teams", "com.microsoft.teams"}, Pair{"com.mastermindzh.tidal-hifi", "com.tidal.desktop"},
                      Pair{"dev.aunetx.deezer", "com.deezer.deezer-desktop"},
                      Pair{"tv.plex.PlexDesktop", "tv.plex.player"}, Pair{"app.quillmere.host", "app.quillmere.host"}));

TEST(Identities, CaseOfAnIdMakesNoDifference) {
  EXPECT_EQ(Identities::builtIn().forDesktopID("Firefox-ESR"), "org.mozilla.firefox");
}

TEST(Identities, UnknownIdsAreAbsent) {
  EXPECT_EQ(Identities::builtIn().forDesktopID("org.gnome.Totem"), std::nullopt);
  EXPECT_EQ(Identities::builtIn().forDesktopID(""), std::nullopt);
  EXPECT_EQ(Identities::builtIn().forBinary("mpv"), std::nullopt);
}

TEST(Identities, WebApplicationsCountForTheirBrowser) {
  const std::string hash = "agimnkijcaahngcdmfeangaknmldooml";
  EXPECT_EQ(Identities::builtIn().forDesktopID("chrome-" + hash + "-Default"), "com.google.Chrome");
  EXPECT_EQ(Identities::builtIn().forDesktopID("brave-" + hash + "-Default"), "com.brave.Browser");
  EXPECT_EQ(Identities::builtIn().forDesktopID("chrome-remote-desktop"), std::nullopt);
}

TEST(Identities, BinariesAreExact) {
  EXPECT_EQ(Identities::builtIn().forBinary("chrome"), "com.google.Chrome");
  EXPECT_EQ(Identities::builtIn().forBinary("Discord"), "com.hnc.Discord");
  EXPECT_EQ(Identities::builtIn().forBinary("CHROME"), std::nullopt);
}

TEST(Identities, EveryBrowserOfTheRulesThatLinuxHasIsThere) {
  for (const auto& browser : DuckRule::browserApps()) {
    if (browser == "com.apple.Safari" || browser == "company.thebrowser.Browser") continue;
    EXPECT_FALSE(Identities::builtIn().desktopIDsOf(browser).empty()) << browser;
  }
}

TEST(IdentitiesFile, RubbishIsRefusedWithAReason) {
  for (const auto* text :
       {"", "[]", "{}", R"({"applications": 1})", R"({"applications": [1]})", R"({"applications": [{"bundleID": 1}]})",
        R"({"applications": [{"bundleID": "a", "desktopIDs": "b"}]})",
        R"({"applications": [{"bundleID": "a", "binaries": [1]}]})"}) {
    std::string problem;
    EXPECT_EQ(Identities::parse(text, problem), std::nullopt) << text;
    EXPECT_FALSE(problem.empty()) << text;
  }
}

TEST(IdentitiesFile, AKeyToldTwiceIsRefused) {
  std::string problem;
  EXPECT_FALSE(Identities::parse(
      R"({"applications": [{"bundleID": "a", "binaries": ["x"]}, {"bundleID": "b", "binaries": ["x"]}]})", problem));
  EXPECT_EQ(problem, "\"x\" is told twice");
}

}  // namespace
}  // namespace quillmere::applications
