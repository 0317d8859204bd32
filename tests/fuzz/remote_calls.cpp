// The mixer's end of the seam, hearing anything at all from the process that draws its windows. Behind it stands a
// mixer that notes what it is asked.
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "remote/MessageType.h"
#include "remote/MixerHost.h"
#include "remote/RemoteStatusItem.h"
#include "runtime/VirtualTime.h"
#include "support/AnyMessages.h"
#include "support/AnyValues.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "support/Silence.h"

namespace {

using namespace quillmere;
using nlohmann::json;

/// Changes nothing, and tells what it is asked for as a message would.
class NotingState final : public MixerState {
  auto note(const char* name) {
    return [this, name](const auto&... arguments) {
      auto list = json::array();
      (list.push_back(json(arguments)), ...);
      asked = {{"name", name}, {"arguments", std::move(list)}};
    };
  }

 public:
// NOLINTBEGIN(bugprone-macro-parentheses): what is handed in are lists with parentheses of their own.
#define OPERATION(name, parameters, arguments) \
  void name parameters override { note(#name) arguments; }
// NOLINTEND(bugprone-macro-parentheses)
#include "state/MixerOperations.def"

  json asked;
};

/// Equal as messages are: no number is no number, and a number is as precise as a float where `isFloat`.
bool isSame(const json& left, const json& right) { return encodeMessage(left) == encodeMessage(right); }

/// What was asked is what the message said, where it is plain to see: the same kind, and the same value.
void requireFaithful(const json& given, const json& asked) {
  for (std::size_t index = 0; index < asked.size(); ++index) {
    const auto& told = given.at(index);
    const auto& taken = asked.at(index);
    if (taken.is_string() || taken.is_boolean() || taken.is_null() || taken.is_number_integer()) {
      QUILLMERE_REQUIRE(told == taken && told.is_boolean() == taken.is_boolean());
      QUILLMERE_REQUIRE(told.is_number_float() == taken.is_number_float());
    } else if (taken.is_number_float()) {
      QUILLMERE_REQUIRE(told.is_number());
    } else if (taken.is_object()) {
      for (const auto& [key, value] : taken.items()) {
        // What may be missing is null then.
        if (told.contains(key)) requireFaithful(json::array({told.at(key)}), json::array({value}));
      }
    }
  }
}

class World {
 public:
  World()
      : host_(
            state_, time_.runtime(log_), [this](const json& message) { sent_.push_back(message); },
            [] { return false; }),
        item_(log_, [](const json&) {}) {
    item_.onAvailabilityChanged([](bool) {});
    item_.onActivated([](const StatusItemActivation&) {});
    item_.onMenuItemChosen([](int, const std::string&) {});
    item_.onMenuAboutToShow([] {});
    item_.onScroll([](int) {});
  }

  void hear(const json& message) {
    sent_.clear();
    state_.asked = nullptr;
    const bool isCall = messageType(message) == "call";
    QUILLMERE_REQUIRE(host_.take(message) == isCall);
    // A call is answered with one word that it is over, whatever became of it, and nothing else is answered.
    QUILLMERE_REQUIRE(sent_.size() == (isCall ? 1U : 0U));
    if (isCall) QUILLMERE_REQUIRE(messageType(sent_.front()) == "performed");
    if (!state_.asked.is_null()) {
      QUILLMERE_REQUIRE(message.at("name") == state_.asked.at("name"));
      requireFaithful(message.at("arguments"), state_.asked.at("arguments"));
      repeat(std::exchange(state_.asked, nullptr));
    }
    static_cast<void>(item_.take(message));
  }

 private:
  /// What was understood once is understood again, and means the same.
  void repeat(const json& asked) {
    const auto message = decodeMessage(
        encodeMessage({{"type", "call"}, {"name", asked.at("name")}, {"arguments", asked.at("arguments")}}));
    QUILLMERE_REQUIRE(message.has_value());
    host_.take(*message);
    QUILLMERE_REQUIRE(isSame(state_.asked, asked));
  }

  fuzz::Silence log_;
  VirtualTime time_;
  NotingState state_;
  std::vector<json> sent_;
  MixerHost host_;
  RemoteStatusItem item_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  static const std::vector<std::string> types{"call",
                                              "statusItemAvailable",
                                              "statusItemActivated",
                                              "statusItemChosen",
                                              "statusItemAboutToShow",
                                              "statusItemScroll",
                                              ""};
  fuzz::Bytes in(data, size);
  while (!in.isEmpty()) {
    const auto message = fuzz::anyMessage(in, types);
    if (!message) continue;
    // Whatever is a message is one when it is written again, and the same.
    const auto bytes = encodeMessage(*message);
    const auto again = decodeMessage(bytes);
    QUILLMERE_REQUIRE(again.has_value() && encodeMessage(*again) == bytes);
    world.hear(*message);
  }
  return 0;
}
