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
#include "wire/BoundedTabs.h"
#include "wire/Calls.h"
#include "wire/Forms.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

namespace {

template <typename T>
json formOf(const T& value) {
  return value;
}
/// A field whose size is up to other programs.
json formOf(const BrowserTabs& tabs) { return wire::boundedForm(tabs); }

}  // namespace

MixerHost::MixerHost(MixerState& state, const Runtime& runtime, SendMessage send, IsBehind isBehind)
    : state_(state), runtime_(runtime), send_(std::move(send)), isBehind_(std::move(isBehind)) {
  QUILLMERE_CHECK_ON(runtime_.main, "the mixer's host is made off the main thread");
  auto values = json::object();
  state_.visitFields([&values, this](const char* name, const auto& field) {
    values[name] = formOf(field.get());
    subscriptions_.push_back(field.observe([this, name](const auto& value) { this->tell(name, value); }));
  });
  send_({{wire::type, wire::fields}, {"values", std::move(values)}});
}

MixerHost::~MixerHost() = default;

template <typename T>
void MixerHost::tell(const char* name, const T& value) {
  // What has waited once goes with the rest, in one order.
  if (!untold_.empty() || untoldPerformed_ > 0 || isBehind_()) {
    untold_.insert(name);
  } else {
    send_({{wire::type, wire::field}, {"name", name}, {"value", formOf(value)}});
  }
}

void MixerHost::tellPerformed() {
  if (!untold_.empty() || untoldPerformed_ > 0 || isBehind_()) {
    ++untoldPerformed_;
  } else {
    send_({{wire::type, wire::performed}});
  }
}

void MixerHost::catchUp() {
  QUILLMERE_CHECK_ON(runtime_.main, "the mixer's host catches up off the main thread");
  state_.visitFields([this](const char* name, const auto& field) {
    const auto untold = untold_.find(name);
    if (untold == untold_.end() || isBehind_()) return;
    untold_.erase(untold);
    send_({{wire::type, wire::field}, {"name", name}, {"value", formOf(field.get())}});
  });
  // After whatever they have changed.
  while (untold_.empty() && untoldPerformed_ > 0 && !isBehind_()) {
    --untoldPerformed_;
    send_({{wire::type, wire::performed}});
  }
}

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
    MixerHost& host;
    ~Ending() { host.tellPerformed(); }
  } const ending{*this};
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
