// Property listeners of the PipeWire host: who is called, how often, in which order, and what is kept.
#include "platform/linux/pipewire/Listeners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "runtime/VirtualTime.h"

namespace quillmere::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr PropertyAddress volume{audio::volumeScalar, audio::scopeOutput, 0};

class ListenersTest : public testing::Test {
 protected:
  PropertyListener named(const std::string& name) {
    return std::make_shared<const std::function<void()>>([this, name] { called.push_back(name); });
  }
  void tell(AudioObjectID object, const PropertyAddress& address) {
    listeners.tell(std::array{PropertyChange{object, address.selector}});
  }

  VirtualTime time;
  Listeners listeners{time.main()};
  std::vector<std::string> called;
};

TEST_F(ListenersTest, ThoseOfTheChangedPropertyAreCalledInTheOrderOfTheirAddition) {
  listeners.add(1, volume, named("first"));
  listeners.add(2, volume, named("of another device"));
  listeners.add(1, {audio::deviceIsAlive}, named("of another property"));
  listeners.add(1, volume, named("second"));
  listeners.add(1, {audio::volumeScalar, audio::scopeOutput, 1}, named("third"));
  tell(1, volume);
  EXPECT_THAT(called, IsEmpty()) << "on the main executor, not inside the call";
  time.runUntilIdle();
  EXPECT_THAT(called, ElementsAre("first", "second", "third"));
}

TEST_F(ListenersTest, SeveralChangesBeforeTheDeliveryAreOneCall) {
  listeners.add(1, volume, named("one"));
  for (int change = 0; change < 5; ++change) tell(1, volume);
  time.runUntilIdle();
  EXPECT_THAT(called, ElementsAre("one"));
  tell(1, volume);
  time.runUntilIdle();
  EXPECT_EQ(called.size(), 2U);
}

TEST_F(ListenersTest, OneThatIsRemovedBeforeItsTurnIsNotCalled) {
  const auto second = named("second");
  listeners.add(1, volume, std::make_shared<const std::function<void()>>([&] { listeners.remove(1, volume, second); }));
  listeners.add(1, volume, second);
  tell(1, volume);
  time.runUntilIdle();
  EXPECT_THAT(called, IsEmpty());
}

TEST_F(ListenersTest, RemovingOneThatWasNeverAddedDoesNothing) {
  listeners.add(1, volume, named("one"));
  listeners.remove(1, volume, named("one"));
  tell(1, volume);
  time.runUntilIdle();
  EXPECT_THAT(called, ElementsAre("one"));
}

TEST_F(ListenersTest, OneThatIsAddedAgainIsOneAndOneRemovalTakesIt) {
  const auto listener = named("one");
  for (int change = 0; change < 10'000; ++change) listeners.add(1, volume, listener);
  EXPECT_EQ(listeners.count(), 1U);
  tell(1, volume);
  time.runUntilIdle();
  EXPECT_THAT(called, ElementsAre("one"));
  listeners.remove(1, volume, listener);
  EXPECT_EQ(listeners.count(), 0U);
}

TEST_F(ListenersTest, OneThatCallsForItselfAgainIsNotCalledTwiceInOneDelivery) {
  PropertyListener again;
  again = std::make_shared<const std::function<void()>>([&] {
    called.emplace_back("again");
    listeners.remove(1, volume, again);
    listeners.add(1, volume, again);
  });
  listeners.add(1, volume, again);
  tell(1, volume);
  time.runUntilIdle();
  EXPECT_THAT(called, ElementsAre("again"));
}

TEST_F(ListenersTest, OneWithoutAFunctionIsNoListener) {
  listeners.add(1, volume, nullptr);
  listeners.add(1, volume, std::make_shared<const std::function<void()>>());
  EXPECT_EQ(listeners.count(), 0U);
}

TEST_F(ListenersTest, WhatIsUnderWayWhenTheyGoIsNotDelivered) {
  auto own = std::make_unique<Listeners>(time.main());
  own->add(1, volume, named("late"));
  own->tell(std::array{PropertyChange{1, audio::volumeScalar}});
  own.reset();
  time.runUntilIdle();
  EXPECT_THAT(called, IsEmpty());
}

}  // namespace
}  // namespace quillmere::pipewire
