// Fields out, calls in.
#include "remote/MixerHost.h"

#include <exception>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "state/MixerState.h"
#include "wire/Calls.h"
#include "wire/Forms.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

MixerHost::MixerHost(MixerState& state, const Runtime& runtime, SendMessage send)
    : state_(state), runtime_(runtime), send_(std::move(send)) {
  QUILLMERE_CHECK_ON(runtime_.main, "the mixer's host is made off the main thread");
  auto values = json::object();
  state_.visitFields([&values, this](const char* name, const auto& field) {
    values[name] = field.get();
    subscriptions_.push_back(field.observe(
        [this, name](const auto& value) { send_({{wire::type, wire::field}, {"name", name}, {"value", value}}); }));
  });
  send_({{wire::type, wire::fields}, {"values", std::move(values)}});
}

MixerHost::~MixerHost() = default;

bool MixerHost::take(const json& message) {
  QUILLMERE_CHECK_ON(runtime_.main, "the mixer's host takes a message off the main thread");
  const auto type = messageType(message);
  try {
    if (type == wire::call) {
      call(message);
    } else {
      return false;
    }
  } catch (const std::exception& error) {
    Logger(runtime_.log, "MixerHost").error("ignored \"" + type + "\": " + error.what());
  }
  return true;
}

void MixerHost::call(const json& message) {
  // Whatever becomes of it, the other end learns that this call is over.
  struct Ending {
    const SendMessage& send;
    ~Ending() { send({{wire::type, wire::performed}}); }
  } const ending{send_};
  const auto& name = message.at("name").get_ref<const std::string&>();
  bool isKnown = false;
  MixerState::visitOperations([&](const char* known, auto operation) {
    if (name != known) return;
    isKnown = true;
    wire::perform(state_, operation, message.at("arguments"));
  });
  if (!isKnown) throw std::invalid_argument("no operation " + name);
}

}  // namespace quillmere
