// A dialogue that a test answers.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/ApplicationChooser.h"

namespace quillmere {

/// [main]
class MemoryApplicationChooser final : public ApplicationChooser {
 public:
  void choose(const ApplicationQuestion& question, Reply reply) override {
    questions_.push_back(question);
    if (const auto earlier = std::exchange(waiting_, std::move(reply))) {
      earlier(std::nullopt);
    } else {
      ++dialogues_;
    }
  }

  /// The user has chosen, or cancelled; nothing where no dialogue is open.
  void answer(std::optional<std::string> path) {
    if (const auto reply = std::exchange(waiting_, {})) reply(std::move(path));
  }
  /// How many dialogues have been opened.
  [[nodiscard]] int dialogues() const { return dialogues_; }
  [[nodiscard]] bool isOpen() const { return static_cast<bool>(waiting_); }
  [[nodiscard]] const std::vector<ApplicationQuestion>& questions() const { return questions_; }

 private:
  std::vector<ApplicationQuestion> questions_;
  Reply waiting_;
  int dialogues_ = 0;
};

}  // namespace quillmere
