// A feed that a test fills, and answers when it likes.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/ReleaseFeed.h"

namespace quillmere {

/// [main]
class MemoryReleaseFeed final : public ReleaseFeed {
 public:
  void fetch(Reply reply) override {
    ++fetches_;
    waiting_.push_back(std::move(reply));
  }

  void answer(std::string text) { tell({std::move(text), {}}); }
  void fail(std::string problem) { tell({std::nullopt, std::move(problem)}); }
  /// How often the feed was asked for.
  [[nodiscard]] int fetches() const { return fetches_; }

 private:
  void tell(const Answer& answer) {
    for (const auto& reply : std::exchange(waiting_, {})) reply(answer);
  }

  std::vector<Reply> waiting_;
  int fetches_ = 0;
};

}  // namespace quillmere
