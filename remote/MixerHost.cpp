// Fields out, calls in.
#include "remote/MixerHost.h"

#include <exception>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/Workspace.h"
#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "state/MixerState.h"
#include "wire/Calls.h"
#include "wire/Forms.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

namespace {

json iconAnswer(const json& number, const std::optional<IconReference>& icon) {
  json answer{{wire::type, wire::icon}, {"number", number}};
  if (!icon) return answer;
  if (const auto* themed = std::get_if<ThemedIcon>(&*icon)) answer["themed"] = themed->name;
  if (const auto* file = std::get_if<FileIcon>(&*icon)) answer["file"] = file->path;
  if (const auto* encoded = std::get_if<EncodedIcon>(&*icon)) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(encoded->png.size());
    for (const auto byte : encoded->png) bytes.push_back(std::to_integer<std::uint8_t>(byte));
    answer["png"] = json::binary(std::move(bytes));
  }
  return answer;
}

}  // namespace

MixerHost::MixerHost(MixerState& state, Workspace& workspace, const Runtime& runtime, SendMessage send)
    : state_(state), workspace_(workspace), runtime_(runtime), send_(std::move(send)) {
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
    } else if (type == wire::findIcon) {
      findIcon(message);
    } else if (type == wire::openURL) {
      workspace_.openURL(message.at("url").get<std::string>());
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

void MixerHost::findIcon(const json& message) {
  // Desktop entries may have to be read for it.
  runtime_.background.post(
      [&workspace = workspace_, send = send_, number = message.at("number"),
       bundleID = message.at("bundleID").get<std::string>()] { send(iconAnswer(number, workspace.icon(bundleID))); });
}

}  // namespace quillmere
