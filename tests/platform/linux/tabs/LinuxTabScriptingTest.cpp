// The port's answers, with a host that a test plays: its browser is whoever has started the test.
#include "platform/linux/LinuxTabScripting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "../support/PostBox.h"
#include "../support/RecordingLogSink.h"
#include "../support/TemporaryFolder.h"
#include "Line.h"
#include "core/Product.h"
#include "platform/linux/tabs/MeetingPlace.h"
#include "runtime/ThreadPoolExecutor.h"

namespace quillmere {
namespace {

using support::Line;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Scripting : public ::testing::Test {
 protected:
  Scripting() : scripting(runtime, registry, LinuxTabScriptingOptions{folder.path()}) {
    ClientFacts facts;
    facts.pid = ::getppid();
    facts.pidIsTrusted = true;
    browser = registry->identify(facts);
  }

  TabScriptResult run(TabRequest::Kind kind, const std::string& bundleID) {
    return scripting.compile(TabRequest{kind, bundleID, 1, 2}, "a script")->execute();
  }
  /// A host that has told two tabs.
  Line connect() {
    Line line(tabs::connectTo(folder.path("quillmere/tabs")));
    const std::string version(appVersion());
    EXPECT_EQ(line.hear(), R"({"mixer":")" + version + R"("})");
    line.say(R"({"host":")" + version + R"("})");
    line.say(R"({"companion":")" + version + R"("})");
    line.say(R"({"tabs":[[1,1,"One","u"],[2,0,"Two","v"]],"windows":[[5,[1,2]]]})");
    return line;
  }

  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  support::PostBox main;
  ThreadPoolExecutor background{2};
  SystemClocks clocks;
  Runtime runtime{main, background, clocks, log, {}};
  std::shared_ptr<ApplicationRegistry> registry = std::make_shared<ApplicationRegistry>(runtime);
  LinuxTabScripting scripting;
  std::string browser;
};

TEST_F(Scripting, ABrowserWithoutACompanionAnswersWithTheEmptyText) {
  const auto result = run(TabRequest::Kind::query, "com.google.Chrome");
  EXPECT_EQ(result.text, "");
  EXPECT_FALSE(result.error);
}

TEST_F(Scripting, ABrowserIsIdentifiedAsItsSoundIs) {
  ASSERT_NE(browser, "");
  const auto line = connect();
  EXPECT_TRUE(support::becomes(
      [&] { return run(TabRequest::Kind::query, browser).text == "1\t1\t1\tOne\tu\n1\t2\t0\tTwo\tv\n"; }));
}

TEST_F(Scripting, AnActivationReachesTheBrowserAndHasNoText) {
  auto line = connect();
  ASSERT_TRUE(support::becomes([&] { return run(TabRequest::Kind::query, browser).text != ""; }));
  const auto result = run(TabRequest::Kind::activate, browser);
  EXPECT_FALSE(result.text);
  EXPECT_FALSE(result.error);
  EXPECT_EQ(line.hear(), R"({"activate":{"tab":2,"window":5}})");
}

/// On a desktop whose only applications are these.
class ScriptingOfAQuitBrowser : public Scripting {
 protected:
  ScriptingOfAQuitBrowser() {
    ApplicationRegistryOptions options;
    options.dataFolders = {folder.path("share")};
    applications = std::make_shared<ApplicationRegistry>(runtime, options);
  }
  TabScriptResult activate() {
    LinuxTabScripting alone(runtime, applications, LinuxTabScriptingOptions{folder.path("run")});
    return alone.compile(TabRequest{TabRequest::Kind::activate, browserID, 1, 2}, "a script")->execute();
  }
  void install(const std::string& command) {
    folder.write("share/applications/org.example.browser.desktop",
                 "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + command + "\n");
  }

  static constexpr const char* browserID = "org.example.browser";
  std::shared_ptr<ApplicationRegistry> applications;
};

TEST_F(ScriptingOfAQuitBrowser, AnActivationStartsIt) {
  install("touch " + folder.path("started"));
  // Asked on the main thread, it looks in the background.
  ASSERT_TRUE(support::becomes([&] { return applications->application(browserID).has_value(); }));
  EXPECT_FALSE(activate().error);
  EXPECT_TRUE(support::becomes([&] { return std::filesystem::exists(folder.path("started")); }));
}

TEST_F(ScriptingOfAQuitBrowser, WithoutADesktopEntryAnActivationIsAnErrorInWords) {
  const auto result = activate();
  ASSERT_TRUE(result.error);
  EXPECT_EQ(result.error->message, "no companion of this browser is connected, and no desktop entry starts it");
}

TEST_F(ScriptingOfAQuitBrowser, OneThatCannotBeStartedIsAnErrorInWords) {
  install(folder.path("nothing"));
  const auto result = activate();
  ASSERT_TRUE(result.error);
  EXPECT_NE(result.error->message, "");
}

TEST_F(Scripting, CompanionsThatComeAndGoAreToldOnTheMainThread) {
  const auto companions = scripting.companions();
  int told = 0;
  companions->onChanged([&] { ++told; });
  EXPECT_THAT(companions->connected(), IsEmpty());
  {
    const auto line = connect();
    ASSERT_TRUE(main.becomes([&] { return told == 1; }));
    ASSERT_THAT(companions->connected(), SizeIs(1));
    EXPECT_EQ(companions->connected().front().version, appVersion());
  }
  EXPECT_TRUE(main.becomes([&] { return told == 2; }));
  EXPECT_THAT(companions->connected(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
