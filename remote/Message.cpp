// Messages are CBOR: numbers and texts arrive bit by bit as they were.
#include "remote/SendMessage.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "wire/Shape.h"

namespace quillmere {

std::string encodeMessage(const nlohmann::json& message) {
  std::string bytes;
  nlohmann::json::to_cbor(message, bytes);
  return bytes;
}

std::optional<nlohmann::json> decodeMessage(const std::string& bytes) {
  if (!wire::hasShapeOfMessage(bytes)) return std::nullopt;
  auto message = nlohmann::json::from_cbor(bytes, true, false);
  if (message.is_discarded()) return std::nullopt;
  return message;
}

std::string messageType(const nlohmann::json& message) {
  const auto found = message.is_object() ? message.find("type") : message.end();
  return found != message.end() && found->is_string() ? found->get<std::string>() : std::string();
}

}  // namespace quillmere
