// Observable fields: who is told, when, and what happens to those who leave meanwhile.
#include "runtime/Observable.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quillmere {
namespace {

TEST(Observable, TellsObserversOfAChangeAndNotOfAnEqualValue) {
  Observable<int> field(1);
  std::vector<int> told;
  const auto subscription = field.observe([&](int value) { told.push_back(value); });
  EXPECT_TRUE(told.empty()) << "the present value is not told";
  EXPECT_FALSE(field.set(1));
  EXPECT_TRUE(field.set(2));
  EXPECT_FALSE(field.set(2));
  EXPECT_EQ(told, std::vector<int>{2});
}

TEST(Observable, EndedSubscriptionsHearNothing) {
  Observable<int> field;
  int told = 0;
  auto subscription = field.observe([&](int) { ++told; });
  subscription.cancel();
  field.set(5);
  EXPECT_EQ(told, 0);
}

TEST(Observable, AFieldThatNeverChangesForgetsThoseWhoLeft) {
  const Observable<int> field;
  const auto stays = field.observe([](int) {});
  for (int visitor = 0; visitor < 1000; ++visitor) field.observe([](int) {}).cancel();
  // The last to leave may still have a place.
  EXPECT_LE(field.heldObservers(), 2U);
}

TEST(Observable, SubscriptionMayOutliveTheField) {
  Subscription subscription;
  {
    Observable<int> field;
    subscription = field.observe([](int) {});
  }
  subscription.cancel();
}

TEST(Observable, AnObserverThatEndsAnotherBeforeItsTurnSilencesIt) {
  Observable<int> field;
  int told = 0;
  std::optional<Subscription> second;
  const auto first = field.observe([&](int) { second.reset(); });
  second = field.observe([&](int) { ++told; });
  field.set(1);
  EXPECT_EQ(told, 0);
}

TEST(Observable, AnObserverMaySubscribeWhileItIsTold) {
  Observable<int> field;
  std::vector<Subscription> kept;
  int late = 0;
  kept.push_back(field.observe([&](int) { kept.push_back(field.observe([&](int) { ++late; })); }));
  field.set(1);
  EXPECT_EQ(late, 0);
  field.set(2);
  EXPECT_EQ(late, 1);
}

TEST(Observable, ModifyTellsOnlyWhatChanged) {
  Observable<std::string> field("a");
  int told = 0;
  const auto subscription = field.observe([&](const std::string&) { ++told; });
  EXPECT_FALSE(field.modify([](std::string&) {}));
  EXPECT_TRUE(field.modify([](std::string& text) { text += "b"; }));
  EXPECT_EQ(*field, "ab");
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace quillmere
