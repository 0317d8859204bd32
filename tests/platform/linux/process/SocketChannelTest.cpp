// Messages over a socket pair, both ends in this process.
#include "platform/linux/process/SocketChannel.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "../support/Patience.h"

namespace quillmere {
namespace {

using support::longEnough;

/// What has come, and a place to wait for it.
class Inbox {
 public:
  ChannelEvents events() {
    return {[this](std::string message) {
              const std::scoped_lock lock(mutex_);
              messages_.push_back(std::move(message));
              changed_.notify_all();
            },
            [this] {
              const std::scoped_lock lock(mutex_);
              isClosed_ = true;
              changed_.notify_all();
            }};
  }
  bool waitForMessages(std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, longEnough, [&] { return messages_.size() >= count; });
  }
  bool waitForEnd() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, longEnough, [&] { return isClosed_; });
  }
  std::vector<std::string> messages() {
    const std::scoped_lock lock(mutex_);
    return messages_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> messages_;
  bool isClosed_ = false;
};

class Sockets : public ::testing::Test {
 protected:
  Sockets() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0); }
  ~Sockets() override {
    if (ends[1] >= 0) ::close(ends[1]);
  }

  Inbox inbox;
  std::array<int, 2> ends{};
};

TEST_F(Sockets, MessagesArriveWholeAndInOrder) {
  Inbox other;
  SocketChannel near(ends[0], inbox.events());
  SocketChannel far(std::exchange(ends[1], -1), other.events());
  std::vector<std::string> sent;
  for (int number = 0; number < 500; ++number) sent.emplace_back(static_cast<std::size_t>(number), 'x');
  for (const auto& message : sent) near.send(message);
  ASSERT_TRUE(other.waitForMessages(sent.size()));
  EXPECT_EQ(other.messages(), sent);
}

TEST_F(Sockets, WhatWaitsIsCountedAndItsEndIsTold) {
  std::promise<void> drained;
  auto events = inbox.events();
  events.drained = [&drained] { drained.set_value(); };
  SocketChannel near(ends[0], std::move(events));
  near.send("at once");
  EXPECT_EQ(near.waitingBytes(), 0U);
  const std::string large(std::size_t{4} << 20U, 'x');
  near.send(large);
  EXPECT_GT(near.waitingBytes(), 0U);
  Inbox other;
  const SocketChannel far(std::exchange(ends[1], -1), other.events());
  ASSERT_TRUE(other.waitForMessages(2));
  EXPECT_EQ(drained.get_future().wait_for(longEnough), std::future_status::ready);
  EXPECT_EQ(near.waitingBytes(), 0U);
}

TEST_F(Sockets, BothEndsMaySendMoreThanTheSocketHoldsAtOnce) {
  Inbox other;
  SocketChannel near(ends[0], inbox.events());
  SocketChannel far(std::exchange(ends[1], -1), other.events());
  const std::string large(std::size_t{6} << 20U, '\xA5');
  for (int round = 0; round < 2; ++round) {
    near.send(large);
    far.send(large);
  }
  ASSERT_TRUE(inbox.waitForMessages(2));
  ASSERT_TRUE(other.waitForMessages(2));
  EXPECT_EQ(inbox.messages().back(), large);
  EXPECT_EQ(other.messages().back(), large);
}

TEST_F(Sockets, EndIsToldAfterEverythingThatWasSent) {
  SocketChannel near(ends[0], inbox.events());
  {
    Inbox other;
    SocketChannel far(std::exchange(ends[1], -1), other.events());
    far.send("last words");
  }
  ASSERT_TRUE(inbox.waitForEnd());
  EXPECT_EQ(inbox.messages(), (std::vector<std::string>{"last words"}));
  near.send("into the void");
}

TEST_F(Sockets, ALengthBeyondAllMessagesEndsTheChannel) {
  SocketChannel near(ends[0], inbox.events());
  const std::array<unsigned char, 6> garbage{0xFF, 0xFF, 0xFF, 0xFF, 1, 2};
  ASSERT_EQ(::send(ends[1], garbage.data(), garbage.size(), 0), static_cast<ssize_t>(garbage.size()));
  EXPECT_TRUE(inbox.waitForEnd());
  EXPECT_TRUE(inbox.messages().empty());
}

TEST_F(Sockets, HalfAMessageIsNone) {
  SocketChannel near(ends[0], inbox.events());
  const std::array<unsigned char, 6> half{9, 0, 0, 0, 'a', 'b'};
  ASSERT_EQ(::send(ends[1], half.data(), half.size(), 0), static_cast<ssize_t>(half.size()));
  ::close(std::exchange(ends[1], -1));
  EXPECT_TRUE(inbox.waitForEnd());
  EXPECT_TRUE(inbox.messages().empty());
}

TEST_F(Sockets, AnEndThatReadsNothingIsGivenUpAndNobodyWaitsForIt) {
  SocketChannel near(ends[0], inbox.events());
  const std::string large(std::size_t{1} << 20U, 'x');
  for (std::size_t sent = 0; sent <= SocketChannel::mostWaiting; sent += large.size()) near.send(large);
  near.send(large);
  EXPECT_TRUE(inbox.waitForEnd());
}

}  // namespace
}  // namespace quillmere
