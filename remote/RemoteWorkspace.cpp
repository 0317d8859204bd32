// Questions by number.
#include "remote/RemoteWorkspace.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

namespace {

std::optional<IconReference> iconOf(const json& message) {
  if (const auto themed = message.find("themed"); themed != message.end() && themed->is_string()) {
    return ThemedIcon{themed->get<std::string>()};
  }
  if (const auto file = message.find("file"); file != message.end() && file->is_string()) {
    return FileIcon{file->get<std::string>()};
  }
  if (const auto png = message.find("png"); png != message.end() && png->is_binary()) {
    EncodedIcon icon;
    for (const auto byte : png->get_binary()) icon.png.push_back(std::byte{byte});
    return icon;
  }
  return std::nullopt;
}

}  // namespace

RemoteWorkspace::RemoteWorkspace(SendMessage send) : send_(std::move(send)) {}

bool RemoteWorkspace::take(const json& message) {
  if (messageType(message) != wire::icon) return false;
  const auto number = message.find("number");
  if (number == message.end() || !number->is_number_unsigned()) return true;
  const std::scoped_lock lock(mutex_);
  answers_.insert_or_assign(number->get<std::uint64_t>(), iconOf(message));
  changed_.notify_all();
  return true;
}

void RemoteWorkspace::close() {
  const std::scoped_lock lock(mutex_);
  isClosed_ = true;
  changed_.notify_all();
}

std::optional<IconReference> RemoteWorkspace::icon(const std::string& bundleID) {
  std::unique_lock lock(mutex_);
  const auto number = ++lastNumber_;
  send_({{wire::type, wire::findIcon}, {"number", number}, {"bundleID", bundleID}});
  changed_.wait(lock, [&] { return isClosed_ || answers_.contains(number); });
  const auto answer = answers_.find(number);
  if (answer == answers_.end()) return std::nullopt;
  auto icon = std::move(answer->second);
  answers_.erase(answer);
  return icon;
}

bool RemoteWorkspace::openURL(const std::string& url) {
  send_({{wire::type, wire::openURL}, {"url", url}});
  return true;
}

}  // namespace quillmere
