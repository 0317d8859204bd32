// The main thread's queue on Qt's event loop: order, timers, posts from other threads, the end.
#include "windows/QtMainExecutor.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quillmere {
namespace {

using namespace std::chrono_literals;

class QtMainExecutorTest : public ::testing::Test {
 protected:
  QtMainExecutor executor;
};

TEST_F(QtMainExecutorTest, RunsPostsInOrderAndTimersWhenTheyAreDue) {
  std::vector<std::string> order;
  executor.postAfter(20ms, [&] {
    order.emplace_back("second timer");
    QCoreApplication::exit();
  });
  executor.postAfter(5ms, [&] { order.emplace_back("first timer"); });
  executor.post([&] { order.emplace_back("one"); });
  executor.post([&] { order.emplace_back("two"); });
  QCoreApplication::exec();
  EXPECT_EQ(order, (std::vector<std::string>{"one", "two", "first timer", "second timer"}));
}

TEST_F(QtMainExecutorTest, ACancelledTimerDoesNotRunAndReleasesItsWork) {
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = held;
  bool ran = false;
  const auto timer = executor.postAfter(1ms, [&ran, held = std::move(held)] { ran = true; });
  executor.cancelTimer(timer);
  EXPECT_TRUE(watch.expired());
  executor.postAfter(5ms, [] { QCoreApplication::exit(); });
  QCoreApplication::exec();
  EXPECT_FALSE(ran);
}

TEST_F(QtMainExecutorTest, PostsFromOtherThreadsArriveOnTheMainThread) {
  int count = 0;
  std::thread other([&] {
    EXPECT_FALSE(executor.isCurrent());
    for (int index = 0; index < 1000; ++index) {
      executor.post([&] {
        EXPECT_TRUE(executor.isCurrent());
        if (++count == 1000) QCoreApplication::exit();
      });
    }
  });
  QCoreApplication::exec();
  other.join();
  EXPECT_EQ(count, 1000);
}

TEST_F(QtMainExecutorTest, WorkPostedByWorkRunsAtALaterTurn) {
  std::vector<std::string> order;
  executor.post([&] {
    executor.post([&] {
      order.emplace_back("posted");
      QCoreApplication::exit();
    });
    order.emplace_back("poster");
  });
  QCoreApplication::exec();
  EXPECT_EQ(order, (std::vector<std::string>{"poster", "posted"}));
}

TEST_F(QtMainExecutorTest, AfterTheEndWorkIsDropped) {
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = held;
  executor.postAfter(1h, [held = std::move(held)] {});
  executor.shutDown();
  EXPECT_TRUE(watch.expired());
  executor.post([] { FAIL(); });
  executor.postAfter(0ms, [] { FAIL(); });
  QCoreApplication::processEvents();
}

}  // namespace
}  // namespace quillmere
