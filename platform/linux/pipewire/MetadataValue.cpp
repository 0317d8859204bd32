#include "MetadataValue.h"

#include <nlohmann/json.hpp>

namespace quillmere::pipewire {

std::optional<std::string> nameFromMetadata(std::string_view json) {
  const auto value = nlohmann::json::parse(json, nullptr, false);
  if (!value.is_object()) return std::nullopt;
  const auto name = value.find("name");
  if (name == value.end() || !name->is_string()) return std::nullopt;
  return name->get<std::string>();
}

std::string metadataFromName(std::string_view name) {
  return nlohmann::json{{"name", std::string(name)}}.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace quillmere::pipewire
