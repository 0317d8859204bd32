// The system's own dialogue, opened where applications are kept, for one application's file.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace quillmere {

/// What the dialogue says, in the user's language.
struct ApplicationQuestion {
  /// Written out for a compiler of ours, which destroys twice what is made of a list in an expression that is awaited.
  /// [any]
  ApplicationQuestion(std::string asTitle, std::string asFilterName)
      : title(std::move(asTitle)), filterName(std::move(asFilterName)) {}

  std::string title;
  /// What is to be chosen from, as the choice of files is called: "Applications".
  std::string filterName;

  friend bool operator==(const ApplicationQuestion&, const ApplicationQuestion&) = default;
};

/// [main]
class ApplicationChooser {
 public:
  /// Absent where the user has cancelled, or where there is no dialogue to be had.
  using Reply = std::function<void(std::optional<std::string> path)>;

  virtual ~ApplicationChooser() = default;
  /// Opens the dialogue and returns; replies once, later, from the main loop. Not at all once this
  /// object has gone. Where a dialogue is open already it is this question's from now on, and the earlier one is
  /// answered as cancelled: whoever asked has most likely gone, and the dialogue stands somewhere behind.
  virtual void choose(const ApplicationQuestion& question, Reply reply) = 0;
};

}  // namespace quillmere
