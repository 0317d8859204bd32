// Small objects.
#include "tabs/Greetings.h"

#include <nlohmann/json.hpp>

#include "tabs/TabBook.h"

namespace quillmere::tabs {

namespace {

using Json = nlohmann::json;

Json numberOrNull(std::optional<std::int64_t> number) { return number ? Json(*number) : Json(nullptr); }

}  // namespace

std::string greeting(std::string_view who, std::string_view version) {
  return Json{{std::string(who), std::string(version)}}.dump();
}

std::optional<std::string> readGreeting(std::string_view who, const std::string& message) {
  const auto told = Json::parse(message, nullptr, false);
  if (!told.is_object()) return std::nullopt;
  const auto version = told.find(std::string(who));
  if (version == told.end() || !version->is_string()) return std::nullopt;
  const auto& text = version->get_ref<const std::string&>();
  if (text.size() > longestVersion) return std::nullopt;
  return withoutControls(text);
}

std::string listenMessage(bool isHeard) { return Json{{"listen", isHeard}}.dump(); }

std::string activateMessage(std::optional<std::int64_t> window, std::optional<std::int64_t> tab) {
  return Json{{"activate", {{"window", numberOrNull(window)}, {"tab", numberOrNull(tab)}}}}.dump();
}

}  // namespace quillmere::tabs
