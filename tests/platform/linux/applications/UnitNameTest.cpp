// Unit names as desktop environments, Flatpak, Snap and systemd write them.
#include "platform/linux/applications/UnitName.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmere::applications {
namespace {

using Kind = UnitIdentity::Kind;

std::string first(const UnitIdentity& identity) { return identity.candidates.empty() ? "" : identity.candidates[0]; }

bool hasCandidate(const UnitIdentity& identity, const std::string& candidate) {
  return std::find(identity.candidates.begin(), identity.candidates.end(), candidate) != identity.candidates.end();
}

TEST(UnitName, GnomeScopeNamesTheEntry) {
  const auto identity = identityOfUnit("app-gnome-org.gnome.Totem-4711.scope");
  EXPECT_EQ(identity.kind, Kind::desktop);
  EXPECT_EQ(first(identity), "org.gnome.Totem");
}

TEST(UnitName, KdeScopeWithoutLauncherNamesTheEntry) {
  EXPECT_EQ(first(identityOfUnit("app-org.kde.elisa-0123456789abcdef.scope")), "org.kde.elisa");
}

TEST(UnitName, KdeServiceWithRandomPartNamesTheEntry) {
  EXPECT_EQ(first(identityOfUnit("app-firefox@0123456789abcdef.service")), "firefox");
  EXPECT_EQ(first(identityOfUnit("app-KDE-org.kde.okular@12345.service")), "org.kde.okular");
}

TEST(UnitName, EscapedDashesBelongToTheId) {
  EXPECT_EQ(first(identityOfUnit("app-gnome-google\\x2dchrome-2211.scope")), "google-chrome");
  EXPECT_EQ(first(identityOfUnit("app-firefox\\x2desr-99.scope")), "firefox-esr");
}

TEST(UnitName, UnescapedDashesAreCandidatesToo) {
  const auto identity = identityOfUnit("app-google-chrome-2211.scope");
  EXPECT_TRUE(hasCandidate(identity, "google-chrome"));
  EXPECT_TRUE(hasCandidate(identity, "chrome"));
}

TEST(UnitName, AutostartServiceNamesTheEntry) {
  EXPECT_EQ(first(identityOfUnit("app-spotify@autostart.service")), "spotify");
  EXPECT_EQ(first(identityOfUnit("app-telegram\\x2ddesktop@autostart.service")), "telegram-desktop");
}

TEST(UnitName, ActivatedServiceNamesTheEntry) {
  EXPECT_EQ(first(identityOfUnit("dbus-:1.2-org.gnome.Nautilus@0.service")), "org.gnome.Nautilus");
}

TEST(UnitName, FlatpakScopeIsASandbox) {
  const auto identity = identityOfUnit("app-flatpak-com.spotify.Client-12345.scope");
  EXPECT_EQ(identity, (UnitIdentity{Kind::flatpak, {"com.spotify.Client"}}));
}

TEST(UnitName, SnapScopesOldAndNewAreSandboxes) {
  EXPECT_EQ(identityOfUnit("snap.spotify.spotify.0f1e2d3c-0011-2233-4455-66778899aabb.scope"),
            (UnitIdentity{Kind::snap, {"spotify_spotify"}}));
  EXPECT_EQ(identityOfUnit("snap.discord.discord-0f1e2d3c-0011-2233-4455-66778899aabb.scope"),
            (UnitIdentity{Kind::snap, {"discord_discord"}}));
}

TEST(UnitName, OtherUnitsTellNothing) {
  for (const auto* unit : {"", "app-.scope", "app.slice", "session-2.scope", "user@1000.service", "pipewire.service",
                           "vte-spawn-0f1e2d3c.scope", "app-", "snap..scope", "snap.x.scope", "-.scope"}) {
    EXPECT_EQ(identityOfUnit(unit).kind, Kind::none) << unit;
  }
}

TEST(UnitName, BrokenEscapesStayAsTheyAre) {
  EXPECT_EQ(unescapeUnit("a\\x2"), "a\\x2");
  EXPECT_EQ(unescapeUnit("a\\xzz"), "a\\xzz");
  EXPECT_EQ(unescapeUnit("a\\x00b"), "a\\x00b") << "no zero bytes";
  EXPECT_EQ(unescapeUnit("a\\x2Db"), "a-b");
}

TEST(CgroupText, InnermostTellingUnitCounts) {
  const auto identity = identityOfCgroup(
      "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-org.gnome.Totem-4711.scope\n");
  EXPECT_EQ(first(identity), "org.gnome.Totem");
}

TEST(CgroupText, SubgroupsOfAUnitCountForIt) {
  const auto identity = identityOfCgroup("0::/user.slice/app.slice/app-org.kde.elisa-12.scope/worker/1\n");
  EXPECT_EQ(first(identity), "org.kde.elisa");
}

TEST(CgroupText, OldHierarchiesAreReadByTheirSystemdLine) {
  const auto identity = identityOfCgroup(
      "4:memory:/user.slice/app-wrong-1.scope\n1:name=systemd:/user.slice/app-org.kde.elisa-12.scope\n0::/\n");
  EXPECT_EQ(first(identity), "org.kde.elisa");
}

TEST(CgroupText, RubbishTellsNothing) {
  for (const auto* text : {"", "\n\n", "nonsense", "0:", "0::", "::::"}) {
    EXPECT_EQ(identityOfCgroup(text).kind, Kind::none) << text;
  }
}

}  // namespace
}  // namespace quillmere::applications
