// What every release feed must do, written once and run on each of them.
// A host offers `ReleaseFeed& feed()`, `void publish(text)`, `void takeDown()`, and `bool becomes(condition)`, during
// which the feed answers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ReleaseFeed.h"

namespace quillmere {

template <typename Host>
class ReleaseFeedContract : public ::testing::Test {
 protected:
  void ask() {
    host_.feed().fetch([this](const ReleaseFeed::Answer& answer) { answers_.push_back(answer); });
  }
  bool haveCome(std::size_t count) {
    return host_.becomes([this, count] { return answers_.size() >= count; });
  }

  std::vector<ReleaseFeed::Answer> answers_;
  Host host_;
};

TYPED_TEST_SUITE_P(ReleaseFeedContract);

TYPED_TEST_P(ReleaseFeedContract, TellsTheTextAsItIs) {
  this->host_.publish("{\"version\": \"1\"}\n\xC3\xA4");
  this->ask();
  EXPECT_TRUE(this->answers_.empty()) << "later, not at once";
  ASSERT_TRUE(this->haveCome(1));
  EXPECT_EQ(this->answers_[0].text, "{\"version\": \"1\"}\n\xC3\xA4");
}

TYPED_TEST_P(ReleaseFeedContract, SaysWhatWentWrong) {
  this->host_.takeDown();
  this->ask();
  ASSERT_TRUE(this->haveCome(1));
  EXPECT_EQ(this->answers_[0].text, std::nullopt);
  EXPECT_FALSE(this->answers_[0].problem.empty());
}

TYPED_TEST_P(ReleaseFeedContract, TwoWhoAskAtOnceGetTheSameAnswer) {
  this->host_.publish("one");
  this->ask();
  this->ask();
  ASSERT_TRUE(this->haveCome(2));
  EXPECT_EQ(this->answers_[0].text, "one");
  EXPECT_EQ(this->answers_[1].text, "one");
}

TYPED_TEST_P(ReleaseFeedContract, CanBeAskedAgain) {
  this->host_.publish("one");
  this->ask();
  ASSERT_TRUE(this->haveCome(1));
  this->host_.publish("two");
  this->ask();
  ASSERT_TRUE(this->haveCome(2));
  EXPECT_EQ(this->answers_[1].text, "two");
}

REGISTER_TYPED_TEST_SUITE_P(ReleaseFeedContract, TellsTheTextAsItIs, SaysWhatWentWrong, TwoWhoAskAtOnceGetTheSameAnswer,
                            CanBeAskedAgain);

}  // namespace quillmere
