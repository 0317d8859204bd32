// The mixer's end of the lines to browsers' host programs, with hosts that a test plays.
#include "platform/linux/tabs/HostListener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "../support/RecordingLogSink.h"
#include "../support/TemporaryFolder.h"
#include "Line.h"
#include "platform/linux/tabs/MeetingPlace.h"
#include "runtime/Clocks.h"

namespace quillmere::tabs {
namespace {

using support::becomes;
using support::Line;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Json = nlohmann::json;
using namespace std::chrono_literals;

constexpr const char* chrome = "com.google.Chrome";
constexpr const char* brave = "com.brave.Browser";
const std::string twoTabs = R"({"tabs":[[11,1,"One","https://1"],[12,0,"Two","https://2"]],"windows":[[5,[11,12]]]})";
const std::string twoRecords = "1\t1\t1\tOne\thttps://1\n1\t2\t0\tTwo\thttps://2\n";

class Hosts : public ::testing::Test {
 protected:
  Hosts() { std::signal(SIGPIPE, SIG_IGN); }

  void start(Duration patience = 20s, std::size_t mostHosts = 32) {
    HostListenerOptions options;
    options.runtimeFolder = folder.path();
    options.version = "1.0";
    options.patience = patience;
    options.mostHosts = mostHosts;
    options.userID = userID;
    options.identify = [this](std::int32_t, const auto& found) {
      const std::scoped_lock lock(mutex);
      if (isSlow) {
        asked.push_back(found);
      } else {
        found(next);
      }
    };
    options.changed = [this] { ++changes; };
    options.told = [this] { ++tellings; };
    listener = std::make_unique<HostListener>(std::move(options), clocks, log);
  }
  [[nodiscard]] std::string path() const { return folder.path("quillmere/tabs"); }

  /// A line that says nothing yet.
  Line connect() { return Line(connectTo(path())); }
  /// A host that has said who it is.
  Line host(const std::string& identifier = chrome, const std::string& program = "chrome",
            const std::string& version = "1.0") {
    {
      const std::scoped_lock lock(mutex);
      next = {identifier, program};
    }
    const auto before = listener->companions().size();
    auto line = connect();
    EXPECT_EQ(line.hear(), R"({"mixer":"1.0"})");
    line.say(Json{{"host", version}}.dump());
    line.say(Json{{"companion", version}}.dump());
    EXPECT_TRUE(becomes([&] { return listener->companions().size() == before + 1; }));
    return line;
  }
  /// Whether the query comes to this text.
  bool tells(const std::string& text, const std::string& identifier = chrome) {
    return becomes([&] { return listener->query(identifier) == text; });
  }
  /// Whether the line is ended with one line in the log that holds this text, while another host is still heard.
  void expectDropped(Line& line, const std::string& why) {
    EXPECT_TRUE(line.ends());
    EXPECT_TRUE(becomes([&] { return log.count(why) == 1; })) << why;
    EXPECT_EQ(log.count("dropped"), 1);
  }

  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  SystemClocks clocks;
  std::optional<std::uint32_t> userID;
  std::mutex mutex;
  BrowserFacts next{chrome, "chrome"};
  /// Under the mutex: browsers are found when the test says so.
  bool isSlow = false;
  std::vector<std::function<void(BrowserFacts)>> asked;
  std::atomic<int> changes = 0;
  std::atomic<int> tellings = 0;
  std::unique_ptr<HostListener> listener;
};

TEST_F(Hosts, AQueryTellsWindowsAndTabsNumberedFromOne) {
  start();
  auto line = host();
  line.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, AHostWhoseBrowserIsStillLookedForIsHeardOnceItIsFoundAndKeepsNobodyWaiting) {
  start();
  {
    const std::scoped_lock lock(mutex);
    isSlow = true;
  }
  auto slow = connect();
  slow.say(Json{{"host", "1.0"}}.dump());
  slow.say(Json{{"companion", "1.0"}}.dump());
  slow.say(twoTabs);
  EXPECT_TRUE(becomes([this] {
    const std::scoped_lock lock(mutex);
    return asked.size() == 1;
  }));
  {
    const std::scoped_lock lock(mutex);
    isSlow = false;
  }
  auto other = host(brave, "brave");
  EXPECT_EQ(listener->companions().size(), 1U);
  // From another thread, as those that read the disk do.
  std::thread([this] { asked.front()({chrome, "chrome"}); }).join();
  EXPECT_EQ(slow.hear(), R"({"mixer":"1.0"})");
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, ABrowserThatIsFoundAfterTheEndIsNobodys) {
  start();
  {
    const std::scoped_lock lock(mutex);
    isSlow = true;
  }
  auto slow = connect();
  EXPECT_TRUE(becomes([this] {
    const std::scoped_lock lock(mutex);
    return asked.size() == 1;
  }));
  listener.reset();
  asked.front()({chrome, "chrome"});
  EXPECT_TRUE(slow.ends());
}

TEST_F(Hosts, WhateverAQueryWouldTellAnewIsToldAndNothingElse) {
  start();
  auto line = host();
  EXPECT_TRUE(becomes([&] { return tellings == 1; })) << "a host that came";
  line.say(twoTabs);
  EXPECT_TRUE(becomes([&] { return tellings == 2; })) << "its tabs";
  ASSERT_TRUE(tells(twoRecords));
  EXPECT_EQ(tellings, 2) << "a query changes nothing";
  line.close();
  EXPECT_TRUE(becomes([&] { return tellings == 3; })) << "its end";
}

TEST_F(Hosts, ABrowserWithoutACompanionHasNoTabs) {
  start();
  auto line = host();
  line.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  EXPECT_EQ(listener->query(brave), "");
  EXPECT_EQ(listener->query(""), "");
}

TEST_F(Hosts, AHostThatGoesTakesItsTabsWithItAndNothingIsLogged) {
  start();
  auto line = host();
  line.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  line.close();
  EXPECT_TRUE(tells(""));
  EXPECT_THAT(listener->companions(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Hosts, SeveralBrowsersOfOneIdentifierAreOneListWhoseWindowsAreNumberedThrough) {
  start();
  auto first = host(chrome, "chromium");
  auto other = host(brave, "brave");
  auto second = host(chrome, "chrome");
  // The same numbers in both: each browser has its own.
  second.say(R"({"tabs":[[11,1,"Mine","m"]],"windows":[[5,[11]]]})");
  other.say(R"({"tabs":[[1,1,"Brave","b"]],"windows":[[1,[1]]]})");
  first.say(R"({"tabs":[[11,1,"A","a"],[12,0,"B","b"]],"windows":[[5,[11]],[6,[12]]]})");
  EXPECT_TRUE(tells("1\t1\t1\tA\ta\n2\t1\t0\tB\tb\n3\t1\t1\tMine\tm\n"));
  EXPECT_TRUE(tells("1\t1\t1\tBrave\tb\n", brave));
}

TEST_F(Hosts, ATitleCanNotBreakItsRecord) {
  start();
  auto line = host();
  line.say(R"({"tabs":[[1,0,"a\tb\nc","u\nv"]],"windows":[[1,[1]]]})");
  EXPECT_TRUE(tells("1\t1\t0\ta b c\tu v\n"));
}

TEST_F(Hosts, ATabThatWasNamedButNeverToldKeepsItsPlace) {
  start();
  auto line = host();
  line.say(R"({"tabs":[[2,1,"Two","u"]],"windows":[[1,[1,2]]]})");
  EXPECT_TRUE(tells("1\t1\t0\t\t\n1\t2\t1\tTwo\tu\n"));
}

TEST_F(Hosts, AnActivationGoesToTheBrowserThatHadTheNumbers) {
  start();
  auto first = host();
  auto second = host();
  first.say(twoTabs);
  second.say(R"({"tabs":[[90,0,"A","a"],[91,0,"B","b"]],"windows":[[9,[90,91]]]})");
  ASSERT_TRUE(tells(twoRecords + "2\t1\t0\tA\ta\n2\t2\t0\tB\tb\n"));
  EXPECT_EQ(listener->activate(chrome, 2, 2), HostListener::Activation::asked);
  EXPECT_EQ(second.hear(), R"({"activate":{"tab":91,"window":9}})");
  EXPECT_EQ(listener->activate(chrome, 1, 1), HostListener::Activation::asked);
  EXPECT_EQ(first.hear(), R"({"activate":{"tab":11,"window":5}})");
}

TEST_F(Hosts, TheNumbersOfTheLastQueryHoldThoughTabsHaveMovedSince) {
  start();
  auto line = host();
  line.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  auto other = host(brave);
  line.say(R"({"windows":[[5,[12,11]]]})");
  // What comes after it is taken after it.
  line.say(R"({"tabs":[[11,1,"One","https://1"]]})");
  other.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords, brave));
  EXPECT_EQ(listener->activate(chrome, 1, 2), HostListener::Activation::asked);
  EXPECT_EQ(line.hear(), R"({"activate":{"tab":12,"window":5}})");
}

TEST_F(Hosts, AnActivationOfAMissingTabIsForItsWindowAndOfAMissingWindowForTheBrowser) {
  start();
  auto line = host();
  line.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  EXPECT_EQ(listener->activate(chrome, 1, 3), HostListener::Activation::asked);
  EXPECT_EQ(line.hear(), R"({"activate":{"tab":null,"window":5}})");
  EXPECT_EQ(listener->activate(chrome, 2, 1), HostListener::Activation::asked);
  EXPECT_EQ(line.hear(), R"({"activate":{"tab":null,"window":null}})");
  EXPECT_EQ(listener->activate(chrome, 0, -1), HostListener::Activation::asked);
  EXPECT_EQ(line.hear(), R"({"activate":{"tab":null,"window":null}})");
}

TEST_F(Hosts, AnActivationInABrowserThatHasGoneReachesNobody) {
  start();
  EXPECT_EQ(listener->activate(chrome, 1, 1), HostListener::Activation::nobodyThere);
  auto line = host();
  line.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  line.close();
  ASSERT_TRUE(becomes([&] { return listener->companions().empty(); }));
  EXPECT_EQ(listener->activate(chrome, 1, 1), HostListener::Activation::nobodyThere);
}

TEST_F(Hosts, GarbageInsteadOfAListIsDroppedAndTheRestGoesOn) {
  start();
  auto good = host();
  good.say(twoTabs);
  auto bad = host();
  bad.say("garbage");
  expectDropped(bad, "what it tells is no object");
  EXPECT_TRUE(tells(twoRecords));
  good.say(R"({"windows":[]})");
  EXPECT_TRUE(tells(""));
}

TEST_F(Hosts, AHundredMegabytesAreDroppedAtTheirLength) {
  start();
  auto good = host();
  good.say(twoTabs);
  auto bad = host();
  const std::uint32_t length = 100'000'000;
  ASSERT_TRUE(bad.put({reinterpret_cast<const char*>(&length), sizeof length}));
  expectDropped(bad, "a message of 100000000 bytes");
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, HalfAMessageForEverIsDroppedAfterAWhile) {
  start(200ms);
  auto good = host();
  good.say(twoTabs);
  auto bad = host();
  const auto whole = framed(twoTabs);
  ASSERT_TRUE(bad.put(whole.substr(0, whole.size() / 2)));
  expectDropped(bad, "it doesn't end what it has begun");
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, WhoSaysNothingIsDroppedAfterAWhile) {
  start(200ms);
  auto good = host();
  good.say(twoTabs);
  auto silent = connect();
  expectDropped(silent, "it doesn't say who it is");
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, WhoSaysHalfOfItsNameIsDroppedAfterAWhile) {
  start(200ms);
  auto line = connect();
  line.say(R"({"host":"1.0"})");
  expectDropped(line, "it doesn't say who it is");
}

TEST_F(Hosts, AHostThatHasSaidWhoItIsMayBeSilentForEver) {
  start(50ms);
  auto line = host();
  auto silent = connect();
  ASSERT_TRUE(silent.ends());
  line.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, ListsBeforeTheNameAreNoName) {
  start();
  auto line = connect();
  line.say(twoTabs);
  expectDropped(line, "its first words are not a host's");
  EXPECT_EQ(listener->query(chrome), "");
}

TEST_F(Hosts, MoreHostsThanAnybodyHasAreTurnedAway) {
  start(20s, 2);
  auto first = host();
  auto second = host();
  auto third = connect();
  expectDropped(third, "there are too many already");
  first.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
  second.close();
  ASSERT_TRUE(becomes([&] { return listener->companions().size() == 1; }));
  auto fourth = host();
  EXPECT_EQ(listener->companions().size(), 2U);
}

TEST_F(Hosts, AHostThatReadsNothingIsDropped) {
  start();
  auto good = host();
  auto deaf = host();
  deaf.say(twoTabs);
  ASSERT_TRUE(tells(twoRecords));
  EXPECT_TRUE(becomes([&] {
    for (int times = 0; times < 1000; ++times) static_cast<void>(listener->activate(chrome, 1, 1));
    return log.count("it doesn't read what it is asked") == 1;
  }));
  good.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, UnlikeVersionsAreToldOnceAndTheirTabsAreTaken) {
  start();
  auto line = host(chrome, "chromium", "2.0");
  line.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
  EXPECT_THAT(log.lines(),
              ElementsAre("BrowserTabs: the companion in chromium is of version 2.0, its host program of 2.0, this "
                          "program of 1.0"));
  EXPECT_THAT(listener->companions(), ElementsAre(ConnectedCompanion{{chrome, "chromium"}, "2.0", "2.0"}));
}

TEST_F(Hosts, ComingAndGoingIsTold) {
  start();
  auto line = host();
  EXPECT_TRUE(becomes([&] { return changes == 1; }));
  line.close();
  EXPECT_TRUE(becomes([&] { return changes == 2; }));
  auto silent = connect();
  silent.close();
  auto again = host();
  EXPECT_TRUE(becomes([&] { return changes == 3; }));
}

TEST_F(Hosts, TheSocketIsTheUsersAlone) {
  start();
  struct stat facts{};
  ASSERT_EQ(::stat(folder.path("quillmere").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0700U);
  ASSERT_EQ(::stat(path().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0600U);
}

TEST_F(Hosts, AFolderThatIsOpenToOthersIsClosed) {
  ASSERT_EQ(::mkdir(folder.path("quillmere").c_str(), 0755), 0);
  ASSERT_EQ(::chmod(folder.path("quillmere").c_str(), 0777), 0);
  start();
  struct stat facts{};
  ASSERT_EQ(::stat(folder.path("quillmere").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0700U);
}

TEST_F(Hosts, WhatACrashHasLeftUnderTheNameIsReplaced) {
  start();
  {
    auto line = host();
  }
  folder.write("quillmere/left", "");
  listener.reset();
  ASSERT_EQ(::access(path().c_str(), F_OK), 0);
  EXPECT_FALSE(connect().isOpen());
  start();
  auto line = host();
  line.say(twoTabs);
  EXPECT_TRUE(tells(twoRecords));
}

TEST_F(Hosts, ALinkInTheFoldersPlaceIsNotFollowed) {
  support::TemporaryFolder elsewhere;
  folder.link("quillmere", elsewhere.path());
  start();
  EXPECT_EQ(log.count("is no folder of this user's"), 1);
  EXPECT_NE(::access(elsewhere.path("tabs").c_str(), F_OK), 0);
  EXPECT_EQ(listener->query(chrome), "");
}

TEST_F(Hosts, WithoutARuntimeFolderThereAreNoTabs) {
  HostListener none({.runtimeFolder = "", .identify = {}, .version = "1.0"}, clocks, log);
  EXPECT_EQ(none.query(chrome), "");
  EXPECT_EQ(none.activate(chrome, 1, 1), HostListener::Activation::nobodyThere);
  EXPECT_EQ(log.count("no runtime folder"), 1);
}

TEST_F(Hosts, AnotherUsersProcessesAreTurnedAwayByTheKernelsWord) {
  // As if this process were another's.
  userID = ::geteuid() + 1;
  start();
  auto line = connect();
  expectDropped(line, "it is another user's");
}

/// What a process of nobody's gets for connecting to the path: 0, or errno.
int errorForNobody(const std::string& path) {
  constexpr uid_t nobody = 65'534;
  const pid_t child = ::fork();
  if (child == 0) {
    if (::setgid(nobody) != 0 || ::setuid(nobody) != 0) ::_exit(255);
    const int socket = connectTo(path);
    if (socket < 0) ::_exit(errno);
    // Held until the other end closes it.
    Line line(socket);
    ::_exit(line.ends() ? 0 : 254);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 253;
}

TEST_F(Hosts, AnotherUserDoesNotReachTheSocket) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user for a moment";
  start();
  ::chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(errorForNobody(path()), EACCES);
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Hosts, AnotherUserWhoReachesTheSocketAllTheSameIsDropped) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be another user for a moment";
  start();
  ::chmod(folder.path().c_str(), 0755);
  ::chmod(folder.path("quillmere").c_str(), 0755);
  ::chmod(path().c_str(), 0666);
  auto good = host();
  good.say(twoTabs);
  EXPECT_EQ(errorForNobody(path()), 0);
  EXPECT_EQ(log.count("it is another user's"), 1);
  EXPECT_TRUE(tells(twoRecords));
}

}  // namespace
}  // namespace quillmere::tabs
