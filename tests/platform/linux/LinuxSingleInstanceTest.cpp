// One instance a user, on a bus and by a lock file.
#include "platform/linux/LinuxSingleInstance.h"

#include <gtest/gtest.h>

#include "support/PostBox.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"

namespace quillmere {
namespace {

enum class Ground { bus, lockFile };

using support::PostBox;

class SingleInstanceOn : public ::testing::TestWithParam<Ground> {
 protected:
  std::unique_ptr<LinuxSingleInstance> make() {
    LinuxSingleInstanceOptions options;
    options.busAddress = GetParam() == Ground::bus ? bus_.address() : "";
    options.runtimeFolder = folder_.path();
    return std::make_unique<LinuxSingleInstance>(main_, log_, options);
  }
  bool becomes(const std::function<bool()>& condition) { return main_.becomes(condition); }

  support::PrivateBus bus_;
  support::TemporaryFolder folder_;
  support::RecordingLogSink log_;
  PostBox main_;
};

TEST_P(SingleInstanceOn, TheFirstOneHasThePlace) {
  const auto first = make();
  EXPECT_TRUE(first->acquire());
  EXPECT_TRUE(first->acquire()) << "asking again changes nothing";
  EXPECT_TRUE(log_.lines().empty());
}

TEST_P(SingleInstanceOn, TheSecondAsksTheFirstToShowItself) {
  const auto first = make();
  int requests = 0;
  first->onActivationRequested([&] { ++requests; });
  ASSERT_TRUE(first->acquire());
  const auto second = make();
  EXPECT_FALSE(second->acquire());
  EXPECT_TRUE(becomes([&] { return requests == 1; }));
  EXPECT_FALSE(make()->acquire());
  EXPECT_TRUE(becomes([&] { return requests == 2; }));
}

TEST_P(SingleInstanceOn, ThePlaceIsFreeOnceTheFirstHasEnded) {
  auto first = make();
  ASSERT_TRUE(first->acquire());
  first.reset();
  // The bus hears of it a moment later.
  EXPECT_TRUE(becomes([&] { return make()->acquire(); }));
}

TEST_P(SingleInstanceOn, ARequestAfterTheEndReachesNobody) {
  auto first = make();
  int requests = 0;
  first->onActivationRequested([&] { ++requests; });
  ASSERT_TRUE(first->acquire());
  ASSERT_FALSE(make()->acquire());
  first.reset();
  main_.run();
  EXPECT_EQ(requests, 0);
}

INSTANTIATE_TEST_SUITE_P(Grounds, SingleInstanceOn, ::testing::Values(Ground::bus, Ground::lockFile));

TEST(SingleInstance, ABusThatIsGoneLeavesTheLockFile) {
  support::TemporaryFolder folder;
  support::RecordingLogSink log;
  PostBox main;
  const LinuxSingleInstanceOptions options{"unix:path=/nowhere/bus", folder.path()};
  LinuxSingleInstance first(main, log, options);
  LinuxSingleInstance second(main, log, options);
  EXPECT_TRUE(first.acquire());
  EXPECT_FALSE(second.acquire());
  EXPECT_EQ(log.count("does not answer"), 2);
}

TEST(SingleInstance, WithNothingToTellInstancesApartEverybodyMayRun) {
  support::RecordingLogSink log;
  PostBox main;
  LinuxSingleInstance first(main, log, {"", ""});
  LinuxSingleInstance second(main, log, {"", "/nowhere/run"});
  EXPECT_TRUE(first.acquire());
  EXPECT_TRUE(second.acquire());
  EXPECT_EQ(log.count("cannot be told apart"), 2);
}

}  // namespace
}  // namespace quillmere
