// Work keeps its order on a pool that promises none.
#include "runtime/OrderedBackground.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "runtime/ThreadPoolExecutor.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

TEST(OrderedBackground, NothingRunsInsideThePost) {
  VirtualTime time;
  const auto queue = std::make_shared<OrderedBackground>(time.background());
  bool ran = false;
  queue->post([&] { ran = true; });
  EXPECT_FALSE(ran);
  time.runUntilIdle();
  EXPECT_TRUE(ran);
}

TEST(OrderedBackground, OnAPoolOfManyThreadsWorkRunsOneAtATimeInTheOrderOfThePosts) {
  constexpr int count = 5000;
  std::vector<int> order;
  std::atomic<int> inside{0};
  std::atomic<int> done{0};
  std::atomic<bool> overlapped{false};
  {
    ThreadPoolExecutor pool(4);
    const auto queue = std::make_shared<OrderedBackground>(pool);
    for (int index = 0; index < count; ++index) {
      queue->post([&, index] {
        if (inside.fetch_add(1) != 0) overlapped = true;
        order.push_back(index);
        inside.fetch_sub(1);
        ++done;
      });
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (done.load() < count && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  }
  ASSERT_EQ(done.load(), count);
  EXPECT_FALSE(overlapped.load());
  for (int index = 0; index < count; ++index) ASSERT_EQ(order[static_cast<std::size_t>(index)], index);
}

TEST(OrderedBackground, WorkPostedFromWorkRunsAfterWhatWaits) {
  VirtualTime time;
  const auto queue = std::make_shared<OrderedBackground>(time.background());
  std::vector<int> order;
  queue->post([&] {
    order.push_back(1);
    queue->post([&] { order.push_back(3); });
  });
  queue->post([&] { order.push_back(2); });
  time.runUntilIdle();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace quillmere
