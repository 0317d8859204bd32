// The program that browsers start, between a browser and a mixer that a test plays.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../support/RecordingLogSink.h"
#include "../support/TemporaryFolder.h"
#include "Line.h"
#include "platform/linux/LinuxTabHost.h"
#include "platform/linux/tabs/MeetingPlace.h"

namespace quillmere {
namespace {

using support::becomes;
using support::Line;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

const std::string hello = R"({"companion":"1.0"})";

/// A mixer's listening socket.
class Mixer {
 public:
  explicit Mixer(const std::string& runtimeFolder) {
    std::string problem;
    socket_ = tabs::listenPrivately(tabs::meetingFolder(runtimeFolder), tabs::socketName, problem);
    EXPECT_GE(socket_, 0) << problem;
  }
  ~Mixer() { ::close(socket_); }
  Mixer(const Mixer&) = delete;
  Mixer& operator=(const Mixer&) = delete;

  /// The next host; a closed line where none comes.
  Line accept() const {
    pollfd watched{socket_, POLLIN, 0};
    if (::poll(&watched, 1, 20'000) <= 0) return Line(-1);
    return Line(::accept(socket_, nullptr, nullptr));
  }
  /// Takes a host as far as its list.
  Line greet(const std::string& version = "1.0") const {
    auto line = accept();
    EXPECT_TRUE(line.isOpen());
    line.say(R"({"mixer":")" + version + R"("})");
    EXPECT_EQ(line.hear(), R"({"host":"1.0"})");
    EXPECT_EQ(line.hear(), hello);
    return line;
  }

 private:
  int socket_ = -1;
};

class Host : public ::testing::Test {
 protected:
  Host() { std::signal(SIGPIPE, SIG_IGN); }
  ~Host() override {
    if (browser) browser->close();
    if (result.valid()) result.wait();
    for (const int each : ends) ::close(each);
  }

  void start(Duration patience = 20s, Duration pause = 50ms) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    ASSERT_EQ(::pipe2(in.data(), O_CLOEXEC), 0);
    ASSERT_EQ(::pipe2(out.data(), O_CLOEXEC), 0);
    browser.emplace(out[0], in[1]);
    ends = {in[0], out[1]};
    const LinuxTabHostOptions options{in[0], out[1], folder.path(), "1.0", patience, pause};
    result = std::async(std::launch::async, [this, options] { return runTabHost(options, clocks, log); });
    EXPECT_EQ(browser->hear(), R"({"host":"1.0"})");
  }
  /// A host whose mixer listens.
  Line startHeard() {
    mixer.emplace(folder.path());
    start();
    browser->say(hello);
    auto line = mixer->greet();
    EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
    EXPECT_EQ(browser->hear(), R"({"listen":true})");
    return line;
  }
  int code() { return result.wait_for(20s) == std::future_status::ready ? result.get() : -1; }

  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  SystemClocks clocks;
  std::optional<Mixer> mixer;
  std::optional<Line> browser;
  std::vector<int> ends;
  std::future<int> result;
};

TEST_F(Host, WhatTheCompanionTellsReachesTheMixer) {
  auto line = startHeard();
  browser->say(R"({"windows":[]})");
  EXPECT_EQ(line.hear(), R"({"windows":[]})");
}

TEST_F(Host, WhatTheMixerAsksReachesTheCompanion) {
  auto line = startHeard();
  line.say(R"({"activate":{"tab":1,"window":2}})");
  EXPECT_EQ(browser->hear(), R"({"activate":{"tab":1,"window":2}})");
}

TEST_F(Host, ItEndsWithTheBrowser) {
  auto line = startHeard();
  browser->close();
  EXPECT_EQ(code(), 0);
  EXPECT_TRUE(line.ends());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Host, ItEndsWithTheBrowserWhereThereIsNoMixer) {
  start();
  browser->close();
  EXPECT_EQ(code(), 0);
}

TEST_F(Host, AMixerThatComesLaterIsFound) {
  start();
  browser->say(hello);
  mixer.emplace(folder.path());
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
}

TEST_F(Host, AMixerThatComesLaterIsFoundWhereItsFolderIsAlready) {
  ASSERT_EQ(::mkdir(folder.path("quillmere").c_str(), 0700), 0);
  start();
  browser->say(hello);
  mixer.emplace(folder.path());
  auto line = mixer->greet();
  EXPECT_TRUE(line.isOpen());
}

TEST_F(Host, WithoutAMixerTheCompanionIsQuietAndWhatItTellsIsLetGo) {
  start();
  browser->say(hello);
  browser->say(R"({"windows":[[1,[]]]})");
  // Taken before there is a mixer.
  ASSERT_TRUE(becomes([&] {
    int left = 0;
    return ::ioctl(ends[0], FIONREAD, &left) == 0 && left == 0;
  }));
  mixer.emplace(folder.path());
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
  browser->say(R"({"windows":[[2,[]]]})");
  EXPECT_EQ(line.hear(), R"({"windows":[[2,[]]]})");
}

TEST_F(Host, AMixerThatRestartsIsFoundAgainAndToldEverything) {
  {
    auto line = startHeard();
    mixer.reset();
  }
  EXPECT_EQ(browser->hear(), R"({"listen":false})");
  mixer.emplace(folder.path());
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
  browser->say(R"({"windows":[]})");
  EXPECT_EQ(line.hear(), R"({"windows":[]})");
}

TEST_F(Host, AMixerWhoseFolderWasRemovedIsFoundAgain) {
  {
    auto line = startHeard();
    mixer.reset();
  }
  EXPECT_EQ(browser->hear(), R"({"listen":false})");
  folder.remove("quillmere");
  mixer.emplace(folder.path());
  EXPECT_TRUE(mixer->greet().isOpen());
}

TEST_F(Host, AMixerThatClosesTheLineIsAskedAgain) {
  startHeard().close();
  EXPECT_EQ(browser->hear(), R"({"listen":false})");
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
}

TEST_F(Host, AMixerThatGoesAtTheFirstWordLeavesTheCompanionQuiet) {
  mixer.emplace(folder.path());
  start();
  browser->say(hello);
  auto line = mixer->accept();
  line.takeNoMore();
  line.say(R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":false})");
  auto again = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
}

TEST_F(Host, AMixerWithoutAPlaceForAnotherHostIsAskedAgain) {
  mixer.emplace(folder.path());
  // As many as wait to be let in.
  std::vector<Line> others;
  for (;;) {
    Line other(tabs::connectTo(folder.path("quillmere/tabs")));
    if (!other.isOpen()) break;
    others.push_back(std::move(other));
  }
  ASSERT_FALSE(others.empty());
  start();
  browser->say(hello);
  // It has found no place by now.
  ASSERT_TRUE(becomes([&] {
    int left = 0;
    return ::ioctl(ends[0], FIONREAD, &left) == 0 && left == 0;
  }));
  for (std::size_t each = 0; each < others.size(); ++each) mixer->accept().close();
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
}

TEST_F(Host, WhatIsNoMixerIsLeft) {
  mixer.emplace(folder.path());
  start();
  browser->say(hello);
  auto line = mixer->accept();
  line.say("garbage");
  EXPECT_TRUE(line.ends());
  auto again = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
}

TEST_F(Host, AMixerThatReadsNothingIsLeftAfterAWhileAndTheCompanionToldToBeQuiet) {
  mixer.emplace(folder.path());
  start(300ms);
  browser->say(hello);
  auto line = mixer->greet();
  EXPECT_EQ(browser->hear(), R"({"mixer":"1.0"})");
  EXPECT_EQ(browser->hear(), R"({"listen":true})");
  const std::string news(500'000, ' ');
  for (int times = 0; times < 10; ++times) browser->say(news);
  EXPECT_EQ(browser->hear(), R"({"listen":false})");
  // Looked for again, and found; it says nothing, so nothing is told.
  auto again = mixer->accept();
  EXPECT_TRUE(again.isOpen());
}

TEST_F(Host, AMessageOfAHundredMegabytesEndsIt) {
  start();
  const std::uint32_t length = 100'000'000;
  browser->put({reinterpret_cast<const char*>(&length), sizeof length});
  EXPECT_EQ(code(), 1);
  EXPECT_EQ(log.count("100000000 bytes"), 1);
}

TEST_F(Host, GarbageInsteadOfTheFirstWordEndsIt) {
  start();
  browser->say("garbage");
  EXPECT_EQ(code(), 1);
  EXPECT_EQ(log.count("no companion's first word"), 1);
}

TEST_F(Host, ABrowserThatSaysNothingEndsIt) {
  start(200ms);
  EXPECT_EQ(code(), 1);
  EXPECT_EQ(log.count("says nothing"), 1);
}

TEST_F(Host, HalfAMessageForEverEndsIt) {
  start(300ms);
  browser->say(hello);
  browser->put(tabs::framed("{}").substr(0, 5));
  EXPECT_EQ(code(), 1);
  EXPECT_EQ(log.count("doesn't end a message"), 1);
}

TEST_F(Host, HalfAMessageAndTheEndIsTheEnd) {
  start();
  browser->say(hello);
  browser->put(tabs::framed("{}").substr(0, 5));
  browser->close();
  EXPECT_EQ(code(), 0);
}

TEST_F(Host, ACompanionOfAnotherVersionIsToldInTheLog) {
  start();
  browser->say(R"({"companion":"0.9"})");
  EXPECT_TRUE(becomes([&] { return log.count("the companion is of version 0.9, this host program of 1.0") == 1; }));
}

TEST_F(Host, AMixerOfAnotherVersionIsToldInTheLog) {
  mixer.emplace(folder.path());
  start();
  browser->say(hello);
  auto line = mixer->greet("2.0");
  EXPECT_EQ(browser->hear(), R"({"mixer":"2.0"})");
  EXPECT_EQ(log.count("the mixer is of version 2.0, this host program of 1.0"), 1);
}

}  // namespace
}  // namespace quillmere
