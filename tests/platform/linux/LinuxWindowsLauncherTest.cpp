// A child process on the line: started, talked with, ended, and what becomes of one that ends by itself.
#include "platform/linux/LinuxWindowsLauncher.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/memory/RecordingLogSink.h"
#include "support/Patience.h"

namespace quillmere {
namespace {

using support::longEnough;

class WindowsLauncherOnLinux : public ::testing::Test {
 protected:
  std::unique_ptr<Channel> launch() {
    return launcher.launch({[this](std::string message) {
                              const std::scoped_lock lock(mutex);
                              messages.push_back(std::move(message));
                              changed.notify_all();
                            },
                            [this] {
                              const std::scoped_lock lock(mutex);
                              ++ends;
                              changed.notify_all();
                            }});
  }
  bool waitForAnswer(const std::string& wanted) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, longEnough, [&] { return !messages.empty() && messages.back() == wanted; });
  }
  bool waitForEnd() {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, longEnough, [&] { return ends > 0; });
  }

  RecordingLogSink log;
  LinuxWindowsLauncher launcher{{"no such program", "channel_echo"}, log};
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> messages;
  int ends = 0;
};

TEST_F(WindowsLauncherOnLinux, StartsTheProgramAndTalksWithIt) {
  ASSERT_TRUE(launcher.isComplete());
  const auto channel = launch();
  ASSERT_NE(channel, nullptr);
  channel->send("hello");
  EXPECT_TRUE(waitForAnswer("hello"));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(WindowsLauncherOnLinux, TheProgramEndsWithItsLineAndThatIsNoNews) {
  auto channel = launch();
  channel->send("hello");
  ASSERT_TRUE(waitForAnswer("hello"));
  channel.reset();
  EXPECT_EQ(ends, 0);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(WindowsLauncherOnLinux, SeveralRunBesideEachOther) {
  const auto first = launch();
  const auto second = launch();
  first->send("one");
  EXPECT_TRUE(waitForAnswer("one"));
  second->send("two");
  EXPECT_TRUE(waitForAnswer("two"));
}

/// The processes that this one has started and that have not been waited for.
std::size_t childCount() {
  std::size_t count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(task.path() / "children");
    for (std::string child; children >> child;) ++count;
  }
  return count;
}

TEST_F(WindowsLauncherOnLinux, OneThatWasPreparedIsTheOneThatIsLaunched) {
  const auto before = childCount();
  launcher.prepare();
  launcher.prepare();
  EXPECT_EQ(childCount(), before + 1);
  const auto channel = launch();
  channel->send("hello");
  ASSERT_TRUE(waitForAnswer("hello"));
  EXPECT_EQ(childCount(), before + 1);
  const auto next = launch();
  EXPECT_EQ(childCount(), before + 2);
}

TEST_F(WindowsLauncherOnLinux, OneThatWasPreparedAndNeverAskedForEndsWithTheLauncher) {
  const auto before = childCount();
  {
    LinuxWindowsLauncher another{{"channel_echo"}, log};
    another.prepare();
    ASSERT_EQ(childCount(), before + 1);
  }
  EXPECT_EQ(childCount(), before);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(WindowsLauncherOnLinux, OneThatEndsUnaskedIsToldAndLogged) {
  const auto channel = launch();
  channel->send("end");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"the windows ended with code 7"}));
  channel->send("are you there?");
}

TEST_F(WindowsLauncherOnLinux, OneThatCrashesIsToldAndLogged) {
  const auto channel = launch();
  channel->send("crash");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"the windows were ended by signal 6"}));
}

TEST_F(WindowsLauncherOnLinux, OneThatDoesNotEndWithItsLineIsEnded) {
  auto channel = launch();
  channel->send("stay");
  ASSERT_TRUE(waitForAnswer("stay"));
  // Returns only when the child has been waited for.
  channel.reset();
  EXPECT_EQ(ends, 0);
}

TEST_F(WindowsLauncherOnLinux, OneThatIsGivenUpIsEndedAtOnceEvenIfItIsStopped) {
  const auto channel = launch();
  channel->send("stop");
  ASSERT_TRUE(waitForAnswer("stop"));
  channel->giveUp();
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"the windows were ended by signal 9"}));
  // Its number may be another process's by now.
  channel->giveUp();
}

TEST_F(WindowsLauncherOnLinux, OneThatEndsAWhileAfterItsLineIsLeftToDoSo) {
  const auto channel = launch();
  channel->send("linger");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"the windows ended with code 7"}));
}

/// The calls that are newer than the oldest kernel, and that a sandbox may forbid, fail from now on.
void forbidNewCalls() {
  std::array<sock_filter, 4> program{{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                                      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
                                      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
                                      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)}};
  const sock_fprog filter{program.size(), program.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
    std::_Exit(9);
  }
}

TEST_F(WindowsLauncherOnLinux, WithoutPidfdOpenAChildLivesToo) {
  // In a process of its own: a filter stays.
  EXPECT_EXIT(
      {
        forbidNewCalls();
        const auto channel = launch();
        channel->send("linger");
        if (!waitForEnd()) std::_Exit(8);
        std::_Exit(log.messages() == std::vector<std::string>{"the windows ended with code 7"} ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(WindowsLauncherOnLinux, WithoutAProgramNothingStartsAndTheLogSaysWhy) {
  LinuxWindowsLauncher incomplete({"no such program"}, log);
  EXPECT_FALSE(incomplete.isComplete());
  EXPECT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(incomplete.launch({}), nullptr);
  EXPECT_EQ(log.lines().size(), 2U);
}

}  // namespace
}  // namespace quillmere
