// The autostart entry, in folders of a test's own.
#include "platform/linux/LinuxLoginItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/linux/applications/CommandLine.h"
#include "support/TemporaryFolder.h"
#include "tests/platform/contract/LoginItemContract.h"

namespace quillmere {
namespace {

using support::TemporaryFolder;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* entryFile = "config/autostart/app.quillmere.host.desktop";
constexpr const char* systemFile = "etc/autostart/app.quillmere.host.desktop";

class LinuxLoginItemHost {
 public:
  explicit LinuxLoginItemHost(const std::string& program = "bin/quillmere") {
    folder.write(program, "#!/bin/sh\n");
    std::filesystem::permissions(folder.path(program), std::filesystem::perms::owner_all);
    options.program = folder.path(program);
    options.configHome = folder.path("config");
    options.configFolders = std::vector<std::string>{folder.path("etc")};
    options.desktops = std::vector<std::string>{"XFCE"};
    options.searchPath = folder.path("bin");
  }
  LoginItem& item() {
    if (!item_) item_.emplace(options);
    return *item_;
  }

  TemporaryFolder folder;
  LinuxLoginItemOptions options;

 private:
  std::optional<LinuxLoginItem> item_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, LoginItemContract, LinuxLoginItemHost);

class LinuxLoginItemTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string entry() const { return contents(entryFile); }
  [[nodiscard]] std::string contents(const char* below) const {
    std::ifstream file(host.folder.path(below));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void writeEntry(const std::string& keys, const char* below = entryFile) const {
    host.folder.write(below, "[Desktop Entry]\nType=Application\nName=quillmere\n" + keys);
  }
  [[nodiscard]] bool isOn() { return host.item().status() == LoginItemStatus::enabled; }
  [[nodiscard]] bool exists(const char* below) const { return std::filesystem::exists(host.folder.path(below)); }

  LinuxLoginItemHost host;
};

TEST_F(LinuxLoginItemTest, StartsTheProgramInTheBackground) {
  ASSERT_EQ(host.item().registerItem(), std::nullopt);
  EXPECT_THAT(entry(), HasSubstr("[Desktop Entry]\n"));
  EXPECT_THAT(entry(), HasSubstr("Exec=\"" + host.options.program + "\" --background\n"));
  EXPECT_THAT(entry(), HasSubstr("TryExec=" + host.options.program + "\n"));
}

TEST_F(LinuxLoginItemTest, AFolderWithOddLettersIsQuoted) {
  const std::string odd = "bin dir/a \"b\" $c `d` \\e %f/quillmere";
  LinuxLoginItemHost other(odd);
  ASSERT_EQ(other.item().registerItem(), std::nullopt);
  EXPECT_EQ(other.item().status(), LoginItemStatus::enabled) << "what it has written it finds again";
}

TEST_F(LinuxLoginItemTest, WhatOthersHaveAddedStays) {
  writeEntry("# mine\nX-GNOME-Autostart-Delay=20\nName[de]=Quillmere auf Deutsch\nHidden=true\nOnlyShowIn=KDE;\n");
  ASSERT_FALSE(isOn());
  ASSERT_EQ(host.item().registerItem(), std::nullopt);
  EXPECT_TRUE(isOn());
  EXPECT_THAT(entry(), HasSubstr("X-GNOME-Autostart-Delay=20"));
  EXPECT_THAT(entry(), HasSubstr("Name[de]=Quillmere auf Deutsch"));
  EXPECT_THAT(entry(), HasSubstr("# mine"));
  EXPECT_THAT(entry(), Not(HasSubstr("Hidden")));
}

TEST_F(LinuxLoginItemTest, UnregisteringTakesTheEntryAway) {
  ASSERT_EQ(host.item().registerItem(), std::nullopt);
  ASSERT_EQ(host.item().unregisterItem(), std::nullopt);
  EXPECT_FALSE(exists(entryFile));
}

TEST_F(LinuxLoginItemTest, ReadsWhatSettingsAndPeopleHaveMadeOfIt) {
  const auto exec = "Exec=" + host.options.program + "\n";
  const std::vector<std::pair<std::string, bool>> entries{
      {exec, true},
      {exec + "Hidden=false\n", true},
      {exec + "Hidden=true\n", false},
      {exec + "X-GNOME-Autostart-enabled=true\n", true},
      {exec + "X-GNOME-Autostart-enabled=false\n", false},
      {exec + "X-GNOME-Autostart-enabled=perhaps\n", true},
      {exec + "OnlyShowIn=XFCE;GNOME;\n", true},
      {exec + "OnlyShowIn=GNOME;\n", false},
      {exec + "NotShowIn=XFCE;\n", false},
      {exec + "TryExec=quillmere\n", true},
      {exec + "TryExec=/nowhere/quillmere\n", false},
      {"Exec=quillmere --background\n", true},
      {"Exec=/nowhere/quillmere\n", false},
      {"Exec=\"unfinished\n", false},
      {"", false},
  };
  for (const auto& [keys, isOnThen] : entries) {
    writeEntry(keys);
    EXPECT_EQ(isOn(), isOnThen) << keys;
  }
}

TEST_F(LinuxLoginItemTest, AProgramThatIsGoneIsNotFound) {
  ASSERT_EQ(host.item().registerItem(), std::nullopt);
  host.folder.remove("bin/quillmere");
  EXPECT_EQ(host.item().status(), LoginItemStatus::notFound);
}

TEST_F(LinuxLoginItemTest, WhatIsNoEntryIsOffAndIsReplaced) {
  const std::vector<std::function<void()>> ways{
      [this] { host.folder.write(entryFile, "rubbish \xFF\xFE"); },
      [this] { host.folder.write(entryFile, ""); },
      [this] { host.folder.write(entryFile, std::string(std::size_t{2} * 1024 * 1024, 'x')); },
      [this] { host.folder.write(entryFile, "[Desktop Entry]\nType=Link\nURL=https://example.org\n"); },
      [this] { host.folder.link(entryFile, "app.quillmere.host.desktop"); },
      [this] { host.folder.link(entryFile, "/nowhere/at/all"); },
      [this] { host.folder.link(entryFile, "/dev/zero"); },
      [this] {
        std::filesystem::create_directories(host.folder.path("config/autostart"));
        ASSERT_EQ(::mkfifo(host.folder.path(entryFile).c_str(), 0600), 0);
      },
  };
  for (std::size_t i = 0; i < ways.size(); ++i) {
    host.folder.remove("config");
    ways[i]();
    EXPECT_FALSE(isOn()) << i;
    EXPECT_EQ(host.item().registerItem(), std::nullopt) << i;
    EXPECT_TRUE(isOn()) << i;
    EXPECT_EQ(host.item().unregisterItem(), std::nullopt) << i;
    EXPECT_FALSE(isOn()) << i;
  }
}

TEST_F(LinuxLoginItemTest, WhatCantBeWrittenIsAFailure) {
  host.folder.write("config", "a file where a folder should be");
  EXPECT_NE(host.item().registerItem(), std::nullopt);
  EXPECT_FALSE(isOn());
  EXPECT_EQ(host.item().unregisterItem(), std::nullopt);

  LinuxLoginItemHost other;
  std::filesystem::create_directories(other.folder.path(std::string(entryFile) + "/not empty"));
  EXPECT_NE(other.item().registerItem(), std::nullopt);
  EXPECT_NE(other.item().unregisterItem(), std::nullopt);
  EXPECT_NE(other.item().status(), LoginItemStatus::enabled);
}

TEST_F(LinuxLoginItemTest, AProgramThatNobodyKnowsIsNotRegistered) {
  host.options.program.clear();
  EXPECT_NE(host.item().registerItem(), std::nullopt);
  EXPECT_FALSE(exists(entryFile));
}

TEST_F(LinuxLoginItemTest, TheSystemsEntryCountsUntilTheUserHasOne) {
  writeEntry("Exec=quillmere\n", systemFile);
  EXPECT_TRUE(isOn());
  ASSERT_EQ(host.item().unregisterItem(), std::nullopt);
  EXPECT_FALSE(isOn());
  EXPECT_THAT(entry(), HasSubstr("Hidden=true")) << "the user's entry takes the system's away";
  EXPECT_TRUE(exists(systemFile));
  ASSERT_EQ(host.item().registerItem(), std::nullopt);
  EXPECT_TRUE(isOn());
}

TEST_F(LinuxLoginItemTest, FromWithinASandboxProgramsAreNotLookedFor) {
  host.options.seesPrograms = false;
  writeEntry("Exec=flatpak run app.quillmere.host\n");
  EXPECT_TRUE(isOn());
}

}  // namespace
}  // namespace quillmere
