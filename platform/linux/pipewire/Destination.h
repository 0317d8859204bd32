// Where streams ask to be played, in the session manager's words, and who knows which output that leads to.
#pragma once

#include <optional>
#include <set>
#include <string>

namespace quillmere::pipewire {

/// A value of the metadata's `target.object`: an output's serial or its `node.name`. Absent: wherever the session
/// manager puts a stream that asks for nothing, which for nearly all is the default output.
using Destination = std::optional<std::string>;

/// Asks the session manager.
class OutputFinder {
 public:
  struct Answer {
    /// False while the session manager hasn't decided yet; `output` is a guess then.
    bool isKnown = false;
    /// Serial of the node that plays what is bound there: a device, or the filter in front of it. Empty where nothing
    /// does at the moment, since there is no output or it is another program's alone.
    std::string output;
  };

  virtual ~OutputFinder() = default;
  /// The session manager is gone: nothing of ours may stay. [loop]
  virtual void forget() = 0;
  /// Answers are needed for these from now on, and for no others. [loop]
  virtual void need(const std::set<Destination>& destinations) = 0;
  /// [loop]
  [[nodiscard]] virtual Answer find(const Destination& destination) const = 0;
};

}  // namespace quillmere::pipewire
