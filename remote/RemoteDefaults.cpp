// Switches by key.
#include "remote/RemoteDefaults.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "wire/Messages.h"

namespace quillmere {

RemoteDefaults::RemoteDefaults(SendMessage send) : send_(std::move(send)) {}

void RemoteDefaults::take(const nlohmann::json& message) {
  QUILLMERE_CHECK_ON(home_, "the views' settings are touched off the main thread");
  if (messageType(message) != wire::fields) return;
  const auto settings = message.find("settings");
  if (settings == message.end()) return;
  for (const auto& [key, value] : settings->items()) {
    if (value.is_boolean()) values_[key] = value.get<bool>();
  }
}

std::optional<DefaultsValue> RemoteDefaults::object(std::string_view key) const {
  QUILLMERE_CHECK_ON(home_, "the views' settings are touched off the main thread");
  const auto found = values_.find(key);
  return found != values_.end() ? std::optional<DefaultsValue>(found->second) : std::nullopt;
}

void RemoteDefaults::set(std::string_view key, DefaultsValue value) {
  QUILLMERE_CHECK_ON(home_, "the views' settings are touched off the main thread");
  const auto* on = std::get_if<bool>(&value);
  if (on == nullptr) return;
  values_.insert_or_assign(std::string(key), *on);
  send_({{wire::type, wire::setting}, {"key", key}, {"value", *on}});
}

void RemoteDefaults::remove(std::string_view key) {
  QUILLMERE_CHECK_ON(home_, "the views' settings are touched off the main thread");
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

}  // namespace quillmere
