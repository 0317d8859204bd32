// The end of a display, told once.
#include "platform/linux/LinuxSessionWatch.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include "runtime/LoopExecutor.h"
#include "support/TemporaryFolder.h"

namespace quillmere {
namespace {

/// A compositor that takes whoever comes.
class FakeCompositor {
 public:
  explicit FakeCompositor(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener_ < 0) throw std::system_error(errno, std::generic_category(), "socket");
    EXPECT_EQ(::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(listener_, 1), 0);
  }
  ~FakeCompositor() { end(); }
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  void accept() { client_ = ::accept(listener_, nullptr, nullptr); }
  void say(const std::string& words) const {
    EXPECT_EQ(::send(client_, words.data(), words.size(), 0), static_cast<ssize_t>(words.size()));
  }
  void end() {
    for (auto* descriptor : {&client_, &listener_}) {
      if (*descriptor >= 0) ::close(*descriptor);
      *descriptor = -1;
    }
  }

 private:
  int listener_ = -1;
  int client_ = -1;
};

class SessionWatchOnLinux : public ::testing::Test {
 protected:
  SessionWatchOnLinux() {
    ::unsetenv("DISPLAY");
    ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    ::setenv("WAYLAND_DISPLAY", "wayland-test", 1);
    // Nothing else ends the loop of a test that fails.
    main.postAfter(std::chrono::seconds(10), [this] { main.stop(); });
  }

  support::TemporaryFolder folder;
  LoopExecutor main;
  int told = 0;
};

TEST_F(SessionWatchOnLinux, TellsTheEndOfTheDisplayOnTheMainLoop) {
  FakeCompositor compositor(folder.path("wayland-test"));
  LinuxSessionWatch watch(main);
  compositor.accept();
  watch.onEnded([&] {
    EXPECT_TRUE(main.isCurrent());
    ++told;
    main.stop();
  });
  main.post([&] { compositor.end(); });
  main.run();
  EXPECT_EQ(told, 1);
}

TEST_F(SessionWatchOnLinux, WhatTheDisplaySaysIsNotItsEnd) {
  FakeCompositor compositor(folder.path("wayland-test"));
  LinuxSessionWatch watch(main);
  compositor.accept();
  bool hasEnded = false;
  watch.onEnded([&] {
    EXPECT_TRUE(hasEnded);
    ++told;
    main.stop();
  });
  compositor.say("greetings");
  main.post([&] {
    hasEnded = true;
    compositor.end();
  });
  main.run();
  EXPECT_EQ(told, 1);
}

TEST_F(SessionWatchOnLinux, WithoutADisplayThereIsNothingToTell) {
  {
    LinuxSessionWatch watch(main);
    watch.onEnded([&] { ++told; });
  }
  main.post([this] { main.stop(); });
  main.run();
  EXPECT_EQ(told, 0);
}

TEST_F(SessionWatchOnLinux, EachSignalThatAsksForTheEndIsToldOnTheMainLoop) {
  LinuxSessionWatch watch(main);
  std::vector<int> left{SIGHUP, SIGINT, SIGTERM};
  const auto next = [&] {
    if (left.empty()) {
      main.stop();
      return;
    }
    const int signal = left.back();
    left.pop_back();
    std::raise(signal);
  };
  watch.onEndRequested([&] {
    EXPECT_TRUE(main.isCurrent());
    ++told;
    next();
  });
  main.post(next);
  main.run();
  EXPECT_EQ(told, 3);
}

TEST_F(SessionWatchOnLinux, SignalsInOneMomentAreToldOnceAtLeastAndLeaveNothingBehind) {
  LinuxSessionWatch watch(main);
  watch.onEndRequested([&] {
    ++told;
    main.post([this] { main.stop(); });
  });
  main.post([] {
    std::raise(SIGTERM);
    std::raise(SIGTERM);
  });
  main.run();
  EXPECT_GE(told, 1);
  EXPECT_LE(told, 2);
}

TEST(SessionWatchDeathTest, ASignalAfterItsEndIsTheSystemsMatter) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        LoopExecutor main;
        {
          LinuxSessionWatch(main).onEndRequested([] {});
        }
        std::raise(SIGTERM);
        std::_Exit(1);
      },
      ::testing::KilledBySignal(SIGTERM), "");
}

TEST_F(SessionWatchOnLinux, MayBeDroppedWhileItWatches) {
  FakeCompositor compositor(folder.path("wayland-test"));
  {
    LinuxSessionWatch watch(main);
    compositor.accept();
    watch.onEnded([&] { ++told; });
  }
  compositor.end();
  main.post([this] { main.stop(); });
  main.run();
  EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace quillmere
