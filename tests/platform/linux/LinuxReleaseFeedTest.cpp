// The feed's program and what can become of it.
#include "platform/linux/LinuxReleaseFeed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "support/PostBox.h"
#include "support/TemporaryFolder.h"
#include "tests/platform/contract/ReleaseFeedContract.h"

namespace quillmere {
namespace {

using support::PostBox;
using support::TemporaryFolder;
using ::testing::HasSubstr;

class LinuxReleaseFeedHost {
 public:
  LinuxReleaseFeedHost() : feed_(main_, {{"/bin/cat", folder_.path("feed")}}) {}
  ReleaseFeed& feed() { return feed_; }
  void publish(const std::string& text) const { folder_.write("feed", text); }
  void takeDown() const { folder_.remove("feed"); }
  bool becomes(const std::function<bool()>& condition) { return main_.becomes(condition); }

 private:
  TemporaryFolder folder_;
  PostBox main_;
  LinuxReleaseFeed feed_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ReleaseFeedContract, LinuxReleaseFeedHost);

class LinuxReleaseFeedTest : public ::testing::Test {
 protected:
  /// The answer of a program that is this shell script.
  ReleaseFeed::Answer answerOf(const std::string& script) {
    options.command = {"/bin/sh", "-c", script};
    return answer();
  }
  ReleaseFeed::Answer answer() {
    std::optional<ReleaseFeed::Answer> come;
    LinuxReleaseFeed feed(main, options);
    feed.fetch([&](const ReleaseFeed::Answer& told) { come = told; });
    EXPECT_TRUE(main.becomes([&] { return come.has_value(); }));
    return come.value_or(ReleaseFeed::Answer{});
  }

  TemporaryFolder folder;
  PostBox main;
  LinuxReleaseFeedOptions options;
};

TEST_F(LinuxReleaseFeedTest, AProgramThatFailsGivesNoTextAndItsOwnWords) {
  const auto answer = answerOf("echo '{\"version\": \"9\"}'; echo 'SSL certificate problem' >&2; exit 1");
  EXPECT_EQ(answer.text, std::nullopt);
  EXPECT_THAT(answer.problem, HasSubstr("SSL certificate problem"));
  EXPECT_EQ(answerOf("exit 3").problem, "its program ended with code 3");
}

TEST_F(LinuxReleaseFeedTest, AProgramThatCrashesGivesNoText) {
  const auto answer = answerOf("echo '{\"version\": \"9\"}'; kill -SEGV $$");
  EXPECT_EQ(answer.text, std::nullopt);
  EXPECT_EQ(answer.problem, "its program was ended by signal 11");
}

TEST_F(LinuxReleaseFeedTest, AProgramThatIsMissingIsAProblemLikeOthers) {
  options.command = {"/nowhere/at/all"};
  EXPECT_FALSE(answer().problem.empty());
  options.command = {""};
  EXPECT_FALSE(answer().problem.empty());
  options.command = {};
  EXPECT_EQ(answer().problem, "there is no program for it");
}

TEST_F(LinuxReleaseFeedTest, ATextWithoutEndIsCutOffAndNotBelieved) {
  options.maxBytes = 10000;
  const auto answer = answerOf("exec yes");
  EXPECT_EQ(answer.text, std::nullopt);
  EXPECT_EQ(answer.problem, "it is too long");
  EXPECT_EQ(answerOf("head -c 10000 /dev/zero").text, std::string(10000, '\0'));
}

TEST_F(LinuxReleaseFeedTest, AProgramThatHangsIsEnded) {
  options.patience = std::chrono::milliseconds(100);
  const auto pidFile = folder.path("pid");
  const auto answer = answerOf("echo $$ > " + pidFile + "; exec sleep 1000");
  EXPECT_EQ(answer.text, std::nullopt);
  EXPECT_EQ(answer.problem, "it takes too long");
  pid_t pid = 0;
  std::ifstream(pidFile) >> pid;
  ASSERT_GT(pid, 0);
  EXPECT_EQ(::kill(pid, 0), -1) << "ended and waited for";
}

TEST_F(LinuxReleaseFeedTest, WhoGoesDoesNotWaitForAProgramThatHangs) {
  options.command = {"/bin/sh", "-c",
                     "echo $$ > " + folder.path("new") + "; mv " + folder.path("new") + " " + folder.path("pid") +
                         "; exec sleep 1000"};
  bool hasCome = false;
  {
    LinuxReleaseFeed feed(main, options);
    feed.fetch([&](const ReleaseFeed::Answer&) { hasCome = true; });
    EXPECT_TRUE(main.becomes([&] { return std::filesystem::exists(folder.path("pid")); }));
  }
  main.run();
  EXPECT_FALSE(hasCome);
  pid_t pid = 0;
  std::ifstream(folder.path("pid")) >> pid;
  EXPECT_EQ(::kill(pid, 0), -1);
}

}  // namespace
}  // namespace quillmere
