// Manifests for browsers, in folders of a test's own.
#include "platform/linux/LinuxBrowserSetUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/linux/tabs/Browsers.h"
#include "support/TemporaryFolder.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SetUpOfBrowsers : public ::testing::Test {
 protected:
  void addProgram(const std::string& name) const {
    folder.write(name, "#!/bin/sh\n");
    ::chmod(folder.path(name).c_str(), 0755);
  }
  [[nodiscard]] LinuxBrowserSetUp setUp() const {
    LinuxBrowserSetUpOptions options;
    options.hostProgram = folder.path("lib/quillmere-tabs");
    options.companionFolder = "/usr/share/quillmere/extension";
    options.configHome = folder.path("config");
    options.searchPath = "relative::" + folder.path("nothing") + ':' + folder.path("bin");
    options.systemRoot = folder.path("system");
    return LinuxBrowserSetUp(std::move(options));
  }
  [[nodiscard]] bool exists(const std::string& file) const { return std::filesystem::exists(folder.path(file)); }
  [[nodiscard]] nlohmann::json read(const std::string& file) const {
    std::ifstream stream(folder.path(file));
    return nlohmann::json::parse(stream, nullptr, false);
  }

  const std::string manifest = "NativeMessagingHosts/app.quillmere.tabs.json";
  support::TemporaryFolder folder;
};

TEST_F(SetUpOfBrowsers, OnlyBrowsersThatAreThereAreFoundInAFixedOrder) {
  EXPECT_THAT(setUp().browsers(), IsEmpty());
  addProgram("bin/microsoft-edge");
  addProgram("bin/brave-browser");
  addProgram("bin/chromium");
  addProgram("bin/google-chrome-stable");
  addProgram("bin/firefox");
  EXPECT_THAT(setUp().browsers(),
              ElementsAre(InstalledBrowser{"chrome", "Google Chrome"}, InstalledBrowser{"chromium", "Chromium"},
                          InstalledBrowser{"brave", "Brave"}, InstalledBrowser{"edge", "Microsoft Edge"}));
}

TEST_F(SetUpOfBrowsers, ABrowserFromSnapIsLeftOut) {
  addProgram("bin/snap");
  folder.link("bin/chromium", folder.path("bin/snap"));
  EXPECT_THAT(setUp().browsers(), IsEmpty());
}

TEST_F(SetUpOfBrowsers, ALinkToNothingIsNoBrowser) {
  folder.link("bin/chromium", folder.path("gone"));
  EXPECT_THAT(setUp().browsers(), IsEmpty());
}

TEST_F(SetUpOfBrowsers, InstallingNamesTheProgramAndLetsNobodyButTheCompanionStartIt) {
  addProgram("bin/chromium");
  addProgram("lib/quillmere-tabs");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  const auto written = read("config/chromium/" + manifest);
  EXPECT_EQ(written["name"], "app.quillmere.tabs");
  EXPECT_EQ(written["path"], folder.path("lib/quillmere-tabs"));
  EXPECT_EQ(written["type"], "stdio");
  EXPECT_EQ(written["allowed_origins"],
            nlohmann::json::array({"chrome-extension://ofdbjeondmijpognfmoldoglkjejkcal/"}));
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", true}));
  EXPECT_FALSE(exists("config/google-chrome"));
}

TEST_F(SetUpOfBrowsers, EachBrowserHasItsOwnFolder) {
  auto browsers = setUp();
  for (const auto* key : {"chrome", "chromium", "brave", "edge"}) EXPECT_EQ(browsers.install(key), std::nullopt);
  EXPECT_TRUE(exists("config/google-chrome/" + manifest));
  EXPECT_TRUE(exists("config/chromium/" + manifest));
  EXPECT_TRUE(exists("config/BraveSoftware/Brave-Browser/" + manifest));
  EXPECT_TRUE(exists("config/microsoft-edge/" + manifest));
  EXPECT_FALSE(exists("config/google-chrome-beta"));
}

TEST_F(SetUpOfBrowsers, FoldersThatABrowserFindsLaterAreTheUsersAloneAndThoseThatAreThereStayAsTheyAre) {
  using std::filesystem::perms;
  const auto modeOf = [&](const std::string& below) {
    return std::filesystem::status(folder.path(below)).permissions();
  };
  std::filesystem::create_directories(folder.path("config"));
  std::filesystem::permissions(folder.path("config"), static_cast<perms>(0755));
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("brave"), std::nullopt);
  EXPECT_EQ(modeOf("config"), static_cast<perms>(0755));
  EXPECT_EQ(modeOf("config/BraveSoftware"), perms::owner_all);
  EXPECT_EQ(modeOf("config/BraveSoftware/Brave-Browser"), perms::owner_all);
  EXPECT_EQ(modeOf("config/BraveSoftware/Brave-Browser/NativeMessagingHosts"), perms::owner_all);
}

TEST_F(SetUpOfBrowsers, AChannelThatIsUsedIsSetUpWithTheRest) {
  folder.write("config/google-chrome-beta/Preferences", "{}");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chrome"), std::nullopt);
  EXPECT_TRUE(exists("config/google-chrome-beta/" + manifest));
  ASSERT_EQ(browsers.remove("chrome"), std::nullopt);
  EXPECT_FALSE(exists("config/google-chrome-beta/" + manifest));
}

TEST_F(SetUpOfBrowsers, RemovingTakesTheManifestAndNothingElse) {
  addProgram("bin/chromium");
  addProgram("lib/quillmere-tabs");
  folder.write("config/chromium/NativeMessagingHosts/other.json", "{}");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  ASSERT_EQ(browsers.remove("chromium"), std::nullopt);
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", false}));
  EXPECT_TRUE(exists("config/chromium/NativeMessagingHosts/other.json"));
  EXPECT_EQ(browsers.remove("chromium"), std::nullopt);
}

TEST_F(SetUpOfBrowsers, AManifestOfAProgramThatIsGoneCountsForNothing) {
  addProgram("bin/chromium");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", false}));
}

TEST_F(SetUpOfBrowsers, ABrokenManifestCountsForNothingAndIsReplaced) {
  addProgram("bin/chromium");
  addProgram("lib/quillmere-tabs");
  auto browsers = setUp();
  for (const auto* text : {"", "garbage", "[]", R"({"path":1})", R"({"path":"/bin/sh","allowed_origins":["x"]})"}) {
    folder.write("config/chromium/" + manifest, text);
    EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", false})) << text;
  }
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", true}));
}

TEST_F(SetUpOfBrowsers, ThePackagesManifestCountsToo) {
  addProgram("bin/chromium");
  addProgram("lib/quillmere-tabs");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  std::filesystem::create_directories(folder.path("system/etc/chromium/native-messaging-hosts"));
  std::filesystem::rename(folder.path("config/chromium/" + manifest),
                          folder.path("system/etc/chromium/native-messaging-hosts/app.quillmere.tabs.json"));
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", true, true}));
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", true, false}));
}

TEST_F(SetUpOfBrowsers, AUsersManifestThatDoesNotWorkHidesThePackages) {
  addProgram("bin/chromium");
  addProgram("lib/quillmere-tabs");
  auto browsers = setUp();
  ASSERT_EQ(browsers.install("chromium"), std::nullopt);
  std::filesystem::create_directories(folder.path("system/etc/chromium/native-messaging-hosts"));
  std::filesystem::copy_file(folder.path("config/chromium/" + manifest),
                             folder.path("system/etc/chromium/native-messaging-hosts/app.quillmere.tabs.json"));
  folder.write("config/chromium/" + manifest, "{}");
  EXPECT_THAT(browsers.browsers(), ElementsAre(InstalledBrowser{"chromium", "Chromium", false, false}));
}

TEST_F(SetUpOfBrowsers, WhatCanNotBeWrittenIsSaid) {
  folder.write("config/chromium", "a file");
  auto browsers = setUp();
  EXPECT_THAT(browsers.install("chromium").value_or(""), ::testing::HasSubstr("config/chromium"));
  EXPECT_THAT(browsers.install("lynx").value_or(""), ::testing::HasSubstr("lynx"));
  LinuxBrowserSetUp without(
      {.hostProgram = "", .companionFolder = "", .configHome = "/", .searchPath = "", .systemRoot = ""});
  EXPECT_THAT(without.install("chromium").value_or(""), ::testing::HasSubstr("missing"));
}

TEST_F(SetUpOfBrowsers, AProgramThatRunsIsNamedByItsBrowser) {
  EXPECT_EQ(tabs::keyOfProgram("chrome"), "chrome");
  EXPECT_EQ(tabs::keyOfProgram("chromium"), "chromium");
  EXPECT_EQ(tabs::keyOfProgram("msedge"), "edge");
  EXPECT_EQ(tabs::keyOfProgram("brave"), "brave");
  EXPECT_EQ(tabs::keyOfProgram("vivaldi-bin"), "vivaldi-bin");
}

/// The companion's id stands in a text of ours; it follows from the key in its manifest, whose version is the
/// program's.
TEST(Companion, ItsManifestAgreesWithTheProgram) {
  std::ifstream stream(QUILLMERE_COMPANION_MANIFEST);
  const auto told = nlohmann::json::parse(stream, nullptr, false);
  ASSERT_TRUE(told.is_object());
  EXPECT_EQ(told["version"], QUILLMERE_TEST_VERSION);
  EXPECT_EQ(told["permissions"], (nlohmann::json{"tabs", "nativeMessaging"}));
  EXPECT_FALSE(told.contains("host_permissions"));
}

}  // namespace
}  // namespace quillmere
