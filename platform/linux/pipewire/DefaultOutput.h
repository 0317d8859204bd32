// Which output counts as the default while the session manager's word is awaited: after a choice of ours, when the
// default has gone and the next one has not been told, over a restart. Knows no daemon; time comes with each question.
// Everything on the loop.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "runtime/Clocks.h"

namespace quillmere::pipewire {

class DefaultOutput {
 public:
  /// Once the session manager has a choice of ours on record, it has this long to act on it.
  static constexpr Duration decisionTime = std::chrono::seconds(2);
  /// A session manager that hangs is waited for this long.
  static constexpr Duration longestSilence = std::chrono::seconds(30);
  /// For so long at most what has gone stands in for what has not come.
  static constexpr Duration longestGap = std::chrono::seconds(8);
  /// A session manager that starts meets the devices one by one; so long after the last one its word is a choice.
  static constexpr Duration settlingTime = std::chrono::seconds(2);

  /// What the daemon has told. Devices go by their node.name.
  struct Facts {
    bool hasSessionManager = false;
    /// The default, as told. That a device of this name is there is not said.
    std::optional<std::string> told;
    /// The choice that the session manager has on record, whoever made it.
    std::optional<std::string> onRecord;
    /// The outputs that are there.
    std::set<std::string> outputs;
  };

  enum class Outcome { none, taken, refused };

  struct Verdict {
    /// What counts as the default now; absent where there is none. May be a device that has gone.
    std::optional<std::string> name;
    /// A choice of ours is still to be answered.
    bool isAwaited = false;
    /// How the last choice has ended; told once.
    Outcome outcome = Outcome::none;
    /// Of a refusal: what was chosen.
    std::string refused;
    /// Devices that have gone still count as there: whoever brought them is just starting anew.
    bool holdsDevices = false;
    /// When the verdict may change without anything having happened.
    std::optional<MonotonicTime> validUntil;
    /// Whether a device of this UID that has gone still counts as there. The dummy that stands in where there is no
    /// output never does: it goes because the others are back. [any]
    [[nodiscard]] bool holds(std::string_view uid) const;
  };

  /// The user wants this one. It counts at once, and replaces an earlier choice. [loop]
  void choose(std::string name, MonotonicTime now);
  /// [loop]
  [[nodiscard]] Verdict judge(const Facts& facts, MonotonicTime now);

 private:
  struct Choice {
    std::string name;
    MonotonicTime madeAt;
    /// It replaced one that had not been answered: what is told may still be the answer to that one.
    bool isSecond = false;
    std::optional<MonotonicTime> recordedAt;
    [[nodiscard]] MonotonicTime deadline() const;
  };
  /// From the loss of the session manager, or of the daemon, until its successor has met all devices.
  struct Restart {
    MonotonicTime lostAt;
    std::set<std::string> outputs;
    /// Since the successor has told a default: when something was last news.
    std::optional<MonotonicTime> lastNewsAt;
    bool isDefaultBack = false;
    [[nodiscard]] MonotonicTime end() const;
  };

  void followRestart(const Facts& facts, const std::optional<std::string>& word, MonotonicTime now);
  [[nodiscard]] Outcome judgeChoice(const Facts& facts, const std::optional<std::string>& word, MonotonicTime now);
  [[nodiscard]] std::optional<MonotonicTime> nextDeadline(MonotonicTime now) const;

  std::optional<Choice> choice_;
  std::optional<Restart> restart_;
  bool hadSessionManager_ = false;
  /// The last one that was the session manager's.
  std::optional<std::string> last_;
  /// Since when there has been no word.
  std::optional<MonotonicTime> gapSince_;
};

}  // namespace quillmere::pipewire
