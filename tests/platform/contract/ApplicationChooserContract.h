// What every dialogue for an application must do, written once and run on each of them.
// A host offers `ApplicationChooser& chooser()`, `void answer(path)`, which is the user, cancelling where there is no
// path, `bool becomes(condition)`, and `int dialogues()`, how many have been opened.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/ApplicationChooser.h"

namespace quillmere {

template <typename Host>
class ApplicationChooserContract : public ::testing::Test {
 protected:
  using Answers = std::vector<std::optional<std::string>>;

  void ask() {
    host_.chooser().choose({"Browse", "Applications"},
                           [this](std::optional<std::string> path) { answers_.push_back(std::move(path)); });
  }
  /// The dialogue is on the screen.
  bool isOpen(int count = 1) {
    return host_.becomes([this, count] { return host_.dialogues() == count; });
  }
  bool haveCome(std::size_t count) {
    return host_.becomes([this, count] { return answers_.size() == count; });
  }

  Answers answers_;
  Host host_;
};

TYPED_TEST_SUITE_P(ApplicationChooserContract);

TYPED_TEST_P(ApplicationChooserContract, TellsTheFileThatWasChosen) {
  this->ask();
  ASSERT_TRUE(this->isOpen());
  EXPECT_TRUE(this->answers_.empty());
  this->host_.answer("/usr/share/applications/an app.desktop");
  ASSERT_TRUE(this->haveCome(1));
  EXPECT_EQ(this->answers_.front(), "/usr/share/applications/an app.desktop");
}

TYPED_TEST_P(ApplicationChooserContract, TellsThatNothingWasChosen) {
  this->ask();
  ASSERT_TRUE(this->isOpen());
  this->host_.answer(std::nullopt);
  ASSERT_TRUE(this->haveCome(1));
  EXPECT_EQ(this->answers_.front(), std::nullopt);
}

TYPED_TEST_P(ApplicationChooserContract, ALaterQuestionTakesTheOpenDialogueOver) {
  std::vector<std::optional<std::string>> earlier;
  this->host_.chooser().choose({"Browse", "Applications"},
                               [&](std::optional<std::string> path) { earlier.push_back(std::move(path)); });
  ASSERT_TRUE(this->isOpen());
  this->ask();
  ASSERT_TRUE(this->host_.becomes([&] { return earlier.size() == 1; }));
  EXPECT_EQ(earlier.front(), std::nullopt);
  EXPECT_TRUE(this->answers_.empty());
  this->host_.answer("/a.desktop");
  ASSERT_TRUE(this->haveCome(1));
  EXPECT_EQ(this->answers_.back(), "/a.desktop");
  EXPECT_EQ(this->host_.dialogues(), 1);
  EXPECT_EQ(earlier.size(), 1U);
}

TYPED_TEST_P(ApplicationChooserContract, AsksAgainAfterAnAnswer) {
  this->ask();
  ASSERT_TRUE(this->isOpen());
  this->host_.answer(std::nullopt);
  ASSERT_TRUE(this->haveCome(1));
  this->ask();
  ASSERT_TRUE(this->isOpen(2));
  this->host_.answer("/b.desktop");
  ASSERT_TRUE(this->haveCome(2));
  EXPECT_EQ(this->answers_.back(), "/b.desktop");
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationChooserContract, TellsTheFileThatWasChosen, TellsThatNothingWasChosen,
                            ALaterQuestionTakesTheOpenDialogueOver, AsksAgainAfterAnAnswer);

}  // namespace quillmere
