// The table of well-known applications.
#include "applications/Identities.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "IdentitiesData.h"
#include "runtime/Threads.h"

namespace quillmere::applications {
namespace {

std::string folded(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char character) { return std::tolower(character); });
  return lower;
}

/// Ids that a program makes up for its web applications or installations: a hash of 32 letters and digits, then
/// anything.
bool isGenerated(std::string_view rest) {
  constexpr std::size_t hashLength = 32;
  return rest.size() >= hashLength && std::ranges::all_of(rest.substr(0, hashLength), [](unsigned char character) {
           return std::isalnum(character) != 0;
         });
}

/// The texts under `key`; a missing key is an empty list, anything but texts a problem.
std::vector<std::string> textsOf(const nlohmann::json& object, const char* key, std::string& problem) {
  std::vector<std::string> texts;
  const auto list = object.find(key);
  if (list == object.end()) return texts;
  if (!list->is_array()) {
    problem = std::string(key) + " is not a list";
    return texts;
  }
  for (const auto& text : *list) {
    if (!text.is_string() || text.get_ref<const std::string&>().empty()) {
      problem = std::string(key) + " holds something other than a text";
      return {};
    }
    texts.push_back(text.get<std::string>());
  }
  return texts;
}

}  // namespace

const Identities& Identities::builtIn() {
  static const Identities table = [] {
    std::string problem;
    auto parsed = parse(identitiesData, problem);
    if (!parsed) preconditionFailure("the compiled-in table of identities cannot be read");
    return *std::move(parsed);
  }();
  return table;
}

std::optional<Identities> Identities::parse(std::string_view json, std::string& problem) {
  const auto root = nlohmann::json::parse(json, nullptr, false);
  if (!root.is_object() || !root.contains("applications") || !root["applications"].is_array()) {
    problem = "no list of applications";
    return std::nullopt;
  }
  Identities identities;
  for (const auto& application : root["applications"]) {
    if (!application.is_object() || !application.contains("bundleID") || !application["bundleID"].is_string()) {
      problem = "an application without bundleID";
      return std::nullopt;
    }
    const auto bundleID = application["bundleID"].get<std::string>();
    const auto add = [&](Table& table, const std::string& key) {
      const auto [entry, isNew] = table.try_emplace(key, bundleID);
      if (!isNew) problem = "\"" + key + "\" is told twice";
    };
    auto desktopIDs = textsOf(application, "desktopIDs", problem);
    // Two spellings of one id are one key.
    std::vector<std::string> keys;
    for (const auto& id : desktopIDs) {
      if (std::ranges::find(keys, folded(id)) == keys.end()) keys.push_back(folded(id));
    }
    for (const auto& key : keys) add(identities.byDesktopID_, key);
    for (const auto& prefix : textsOf(application, "desktopIDPrefixes", problem)) {
      add(identities.byPrefix_, folded(prefix));
    }
    for (const auto& binary : textsOf(application, "binaries", problem)) add(identities.byBinary_, binary);
    if (!identities.desktopIDs_.try_emplace(bundleID, std::move(desktopIDs)).second) {
      problem = bundleID + " is told twice";
    }
    if (!problem.empty()) return std::nullopt;
  }
  return identities;
}

std::optional<std::string> Identities::forDesktopID(std::string_view id) const {
  const auto key = folded(id);
  if (const auto exact = byDesktopID_.find(key); exact != byDesktopID_.end()) return exact->second;
  for (const auto& [prefix, bundleID] : byPrefix_) {
    if (key.starts_with(prefix) && isGenerated(std::string_view(key).substr(prefix.size()))) return bundleID;
  }
  return std::nullopt;
}

std::optional<std::string> Identities::forBinary(std::string_view fileName) const {
  const auto found = byBinary_.find(fileName);
  if (found == byBinary_.end()) return std::nullopt;
  return found->second;
}

std::vector<std::string> Identities::desktopIDsOf(std::string_view bundleID) const {
  const auto found = desktopIDs_.find(bundleID);
  return found == desktopIDs_.end() ? std::vector<std::string>{} : found->second;
}

}  // namespace quillmere::applications
