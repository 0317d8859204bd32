// A signal: its count, those who follow it, and the one of somebody who can't tell.
#include "runtime/ChangeSignal.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace quillmere {
namespace {

TEST(ChangeSignal, CountsItsRaisesAndTellsThoseWhoFollowBeforeARaiseReturns) {
  ChangeSignal signal;
  std::uint64_t told = 0;
  const auto following = signal.follow([&] { told = signal.raises(); });
  EXPECT_EQ(signal.raises(), 0U);
  signal.raise();
  EXPECT_EQ(told, 1U);
  signal.raise();
  EXPECT_EQ(told, 2U);
}

TEST(ChangeSignal, WhoHasEndedItsSubscriptionIsToldNoMore) {
  ChangeSignal signal;
  int told = 0;
  auto following = signal.follow([&] { ++told; });
  following.cancel();
  signal.raise();
  EXPECT_EQ(told, 0);
}

TEST(ChangeSignal, AFollowerMayEndItsOwnSubscription) {
  ChangeSignal signal;
  int told = 0;
  Subscription following;
  following = signal.follow([&] {
    ++told;
    following.cancel();
  });
  signal.raise();
  signal.raise();
  EXPECT_EQ(told, 1);
}

TEST(ChangeSignal, ASubscriptionMayOutliveItsSignal) {
  Subscription following;
  {
    const ChangeSignal signal;
    following = signal.follow([] {});
  }
  following.cancel();
}

TEST(ChangeSignal, GoesStaleWhenItIsToldToAndNeverOtherwise) {
  ChangeSignal signal;
  EXPECT_EQ(signal.staleAt(), std::nullopt);
  const MonotonicTime time(Duration(42));
  signal.setStaleAt(time);
  EXPECT_EQ(signal.staleAt(), time);
  signal.setStaleAt(std::nullopt);
  EXPECT_EQ(signal.staleAt(), std::nullopt);
}

TEST(ChangeSignal, OfSomebodyWhoCannotTellIsAlwaysStale) {
  EXPECT_EQ(ChangeSignal::absent().staleAt(), MonotonicTime::min());
}

}  // namespace
}  // namespace quillmere
