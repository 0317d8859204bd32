// The client: what it forwards, and the stream that stands for levels.
#include "engine/DriverClient.h"

#include <gmock/gmock.h>

#include <memory>

#include "EngineFixture.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {
namespace {

using testing::ElementsAre;

struct DriverClientTest : EngineFixture {
  ProcessTapEngine engine{hardware, time.runtime(log)};
  std::unique_ptr<DriverClient> client = std::make_unique<DriverClient>(engine, time.background());
};

TEST_F(DriverClientTest, GainsAndRoutesReachTheEngineAsTheyAre) {
  client->applyGain(0.5F, "a");
  client->applyRouting("headphones", "b");
  client->applyRouting(std::nullopt, "b");
  time.runUntilIdle();
  const auto messages = log.messages();
  EXPECT_EQ(messages.front(), "applyGain a → 0.50 (routed=false)");
  EXPECT_THAT(messages, testing::Contains("applyRouting b → headphones"));
  EXPECT_EQ(messages.back(), "applyRouting b → system-default");
}

TEST_F(DriverClientTest, MutingIsGainZero) {
  client->applyMute(true, "a");
  time.runUntilIdle();
  EXPECT_EQ(log.messages().front(), "applyGain a → 0.00 (routed=false)");
}

TEST_F(DriverClientTest, UnmutingLeavesTheEngineAtExactlyOneUntilAnotherGainArrives) {
  engine.updateProcessMap({{"a", 1, 7}});
  client->applyGain(0.4F, "a");
  client->applyMute(true, "a");
  client->applyMute(false, "a");
  time.runUntilIdle();
  EXPECT_TRUE(hardware.taps().empty());
  client->applyGain(0.4F, "a");
  time.runUntilIdle();
  EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), 0.4F);
}

TEST_F(DriverClientTest, TheFirstLevelsArriveAtOnceAndAreEmpty) {
  auto levels = client->levelsStream();
  std::vector<DriverClient::Levels> received;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto element = co_await levels.next()) received.push_back(*element);
  });
  time.runUntilIdle();
  EXPECT_THAT(received, ElementsAre(DriverClient::Levels{}));
}

TEST_F(DriverClientTest, LevelsArriveTenTimesASecondAndAreAlwaysEmpty) {
  auto levels = client->levelsStream();
  int count = 0;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto element = co_await levels.next()) {
      EXPECT_TRUE(element->empty());
      ++count;
    }
  });
  time.advance(999ms);
  EXPECT_EQ(count, 10);
  time.advance(1ms);
  EXPECT_EQ(count, 11);
}

TEST_F(DriverClientTest, AConsumerThatWantsChangesGetsTheFirstLevelsAtOnceAndNoOthers) {
  auto levels = client->levelsStream();
  levels.setPace(Pace::whenChanged);
  int count = 0;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (co_await levels.next()) ++count;
  });
  time.runUntilIdle();
  EXPECT_EQ(count, 1);
  time.advance(1h);
  EXPECT_EQ(count, 1);
  levels.setPace(Pace::everyPeriod);
  time.advance(1s);
  EXPECT_EQ(count, 11);
}

/// Counts what is asked of an executor.
struct CountingExecutor final : Executor {
  explicit CountingExecutor(Executor& wrapped) : inner(wrapped) {}
  void post(Work work) override {
    ++posts;
    inner.post(std::move(work));
  }
  TimerID postAfter(Duration delay, Work work) override {
    ++posts;
    return inner.postAfter(delay, std::move(work));
  }
  void cancelTimer(TimerID timer) override { inner.cancelTimer(timer); }
  [[nodiscard]] MonotonicTime now() const override { return inner.now(); }
  [[nodiscard]] bool isCurrent() const override { return inner.isCurrent(); }

  Executor& inner;
  int posts = 0;
};

TEST_F(DriverClientTest, AnAbandonedStreamEndsItsProducerWithinOnePeriod) {
  CountingExecutor executor(time.background());
  const DriverClient counted(engine, executor);
  auto levels = std::make_optional(counted.levelsStream());
  time.advance(250ms);
  const int postsWhileItRan = executor.posts;
  EXPECT_GT(postsWhileItRan, 2);
  levels.reset();
  time.advance(DriverClient::levelsPeriod);
  const int postsAtTheEnd = executor.posts;
  time.advance(1h);
  EXPECT_EQ(executor.posts, postsAtTheEnd);
}

TEST_F(DriverClientTest, TheInstalledClientIsTheSharedOne) {
  client->install();
  EXPECT_EQ(&DriverClient::shared(), client.get());
}

using DriverClientDeathTest = DriverClientTest;

TEST_F(DriverClientDeathTest, AskingForTheSharedClientWhenThereIsNoneStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  client->install();
  client.reset();
  EXPECT_DEATH(DriverClient::shared(), "no driver client is installed");
}

}  // namespace
}  // namespace quillmere
