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
  void choose(const std::string& title, Reply reply) override {
    titles_.push_back(title);
    if (waiting_) {
      reply(std::nullopt);
      return;
    }
    waiting_ = std::move(reply);
  }

  /// The user has chosen, or cancelled; nothing where no dialogue is open.
  void answer(std::optional<std::string> path) {
    if (const auto reply = std::exchange(waiting_, {})) reply(std::move(path));
  }
  [[nodiscard]] bool isOpen() const { return static_cast<bool>(waiting_); }
  /// The title of every question.
  [[nodiscard]] const std::vector<std::string>& titles() const { return titles_; }

 private:
  std::vector<std::string> titles_;
  Reply waiting_;
};

}  // namespace quillmere
