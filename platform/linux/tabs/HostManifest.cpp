// JSON, as browsers read it.
#include "tabs/HostManifest.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace quillmere::tabs {

using Json = nlohmann::json;

namespace {

/// The companion's, in every browser: it follows from the key in its manifest.
constexpr const char* companionOrigin = "chrome-extension://ofdbjeondmijpognfmoldoglkjejkcal/";

}  // namespace

std::string manifestText(const std::string& program) {
  const Json manifest{{"name", hostName},
                      {"description", "Tells Quillmere this browser's tabs."},
                      {"path", program},
                      {"type", "stdio"},
                      {"allowed_origins", {companionOrigin}}};
  // A path need not be text.
  return manifest.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::optional<std::string> programInManifest(std::string_view text) {
  const auto told = Json::parse(text, nullptr, false);
  if (!told.is_object()) return std::nullopt;
  const auto program = told.find("path");
  const auto origins = told.find("allowed_origins");
  if (program == told.end() || !program->is_string() || origins == told.end() || !origins->is_array()) {
    return std::nullopt;
  }
  if (std::ranges::find(*origins, Json(companionOrigin)) == origins->end()) return std::nullopt;
  const auto& path = program->get_ref<const std::string&>();
  // The system would look at what stands before a null byte.
  if (!path.starts_with('/') || path.find('\0') != std::string::npos) return std::nullopt;
  return path;
}

}  // namespace quillmere::tabs
