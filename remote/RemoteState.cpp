// Fields in, calls out.
#include "remote/RemoteState.h"

#include <algorithm>
#include <exception>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "wire/Forms.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

struct RemoteState::HeldBack {
  /// How many calls had been sent when the last one had changed the field.
  std::map<const void*, std::uint64_t> lastCalls;
  struct Value {
    const void* field;
    json value;
  };
  /// The newest value of each field that may not change yet.
  std::map<std::string, Value> values;

  [[nodiscard]] bool holds(const void* field, std::uint64_t performed) const {
    const auto last = lastCalls.find(field);
    return last != lastCalls.end() && performed < last->second;
  }
};

RemoteState::RemoteState(LogSink& log, SendMessage send)
    : log_(log), send_(std::move(send)), heldBack_(std::make_unique<HeldBack>()) {}

RemoteState::~RemoteState() = default;

bool RemoteState::take(const json& message) {
  QUILLMERE_CHECK_ON(home_, "the remote state takes a message off the main thread");
  const auto type = messageType(message);
  try {
    if (type == wire::fields) {
      for (const auto& [name, value] : message.at("values").items()) takeField(name, value);
    } else if (type == wire::field) {
      takeField(message.at("name").get<std::string>(), message.at("value"));
    } else if (type == wire::performed) {
      notePerformed();
    } else {
      return false;
    }
  } catch (const std::exception& error) {
    Logger(log_, "RemoteState").error("ignored \"" + type + "\": " + error.what());
  }
  return true;
}

void RemoteState::takeField(const std::string& name, const json& value) {
  bool isKnown = false;
  visitOwnFields([&](const char* known, auto& field) {
    if (name != known) return;
    isKnown = true;
    if (heldBack_->holds(&field, performed_)) {
      heldBack_->values[name] = {&field, value};
      return;
    }
    try {
      field.set(readAs<std::remove_cvref_t<decltype(field.get())>>(value));
    } catch (const std::exception& error) {
      Logger(log_, "RemoteState").error("ignored a value of \"" + name + "\": " + error.what());
    }
  });
  if (!isKnown) Logger(log_, "RemoteState").error("ignored a value of \"" + name + "\": no such field");
}

void RemoteState::noteChanged(const void* field) { heldBack_->lastCalls[field] = sent_; }

void RemoteState::notePerformed() {
  // More than were sent is a mistake of the other end's; what is sent from now on is held back all the same.
  performed_ = std::min(performed_ + 1, sent_);
  auto& values = heldBack_->values;
  for (auto next = values.begin(); next != values.end();) {
    const auto at = next++;
    if (heldBack_->holds(at->second.field, performed_)) continue;
    const auto free = values.extract(at);
    takeField(free.key(), free.mapped().value);
  }
}

template <typename... Parameters>
auto RemoteState::sender(const char* name, void (MixerState::* /*operation*/)(Parameters...)) {
  // Told by the operation's own parameters: what differs from them does not compile.
  return [this, name](const Parameters&... arguments) {
    QUILLMERE_CHECK_ON(home_, "an operation of the mixer is called off the main thread");
    ++sent_;
    auto list = json::array();
    (list.push_back(json(arguments)), ...);
    send_({{wire::type, wire::call}, {"name", name}, {"arguments", std::move(list)}});
  };
}

// NOLINTBEGIN(bugprone-macro-parentheses): what is handed in are lists with parentheses of their own.
#define OPERATION(name, parameters, arguments) \
  void RemoteState::name parameters { sender(#name, &MixerState::name) arguments; }
#define ASSIGNMENT(name, parameters, arguments, field) \
  void RemoteState::name parameters {                  \
    sender(#name, &MixerState::name) arguments;        \
    noteChanged(&field##_);                            \
    field##_.set arguments;                            \
  }
// NOLINTEND(bugprone-macro-parentheses)
#define LEVEL_OPERATION(name, parameters, arguments)
#include "state/MixerOperations.def"

void RemoteState::setGain(float gain, std::string bundleID) {
  sender("setGain", &MixerState::setGain)(gain, bundleID);
  noteChanged(&apps_);
  apps_.modify([&](std::vector<AudioApp>& apps) {
    const auto app =
        std::find_if(apps.begin(), apps.end(), [&](const AudioApp& each) { return each.bundleID == bundleID; });
    if (app != apps.end()) app->gain = gain;
  });
}

}  // namespace quillmere
