// What panels call: the arguments of each method read, and the answers made. No bus in here.
// Pure: [any].
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../bus/Handles.h"
#include "BusMenu.h"
#include "platform/StatusItem.h"

namespace quillmere::statusitem {

/// A call of the icon. At most one member is set: some calls ask for nothing.
struct ItemCall {
  /// Activated, at this place. `point` is absent where the host says nothing of use.
  struct Activation {
    std::optional<StatusItemPoint> point;
  };
  std::optional<Activation> activation;
  /// Eighths of a degree, positive away from the user; never 0.
  std::optional<int> angleDelta;
  /// Empty for one that is too long to be any.
  std::optional<std::string> activationToken;
};

/// `arguments` are of the types that the interface gives the method.
[[nodiscard]] ItemCall readItemCall(const std::string& method, GVariant* arguments);

/// A call of the menu.
struct MenuCall {
  enum class Kind {
    /// `reply` is the answer.
    answered,
    /// There is no such entry or property.
    refused,
    /// Somebody has to be asked first whether the menu is as it should be: answerTo() then.
    question
  };
  struct Event {
    int id = 0;
    std::string name;
  };

  Kind kind = Kind::refused;
  /// Null for an answer without a value.
  bus::Variant reply;
  /// Of entries that there are.
  std::vector<Event> events;
  /// Of a question: whether it is about several entries, and which of them there are.
  bool isGroup = false;
  std::vector<int> known;
  std::vector<int> unknown;
};

/// `arguments` are of the types that the interface gives the method.
[[nodiscard]] MenuCall readMenuCall(const BusMenu& menu, const std::string& method, GVariant* arguments);

///
[[nodiscard]] bus::Variant answerTo(const MenuCall& question, bool needsUpdate);

}  // namespace quillmere::statusitem
