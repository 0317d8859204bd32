// The kinds of messages between a program and its icon in a panel that another process reaches.
#pragma once

#include <nlohmann/json.hpp>

#include "platform/StatusItem.h"
#include "wire/Forms.h"

namespace quillmere {

inline void to_json(nlohmann::json& form, const StatusMenuItem& item) {
  // All members by name: one more does not compile.
  const auto& [kind, id, title, isEnabled, isChecked, key, icon, children] = item;
  form = {{"kind", static_cast<int>(kind)},
          {"id", id},
          {"title", title},
          {"isEnabled", isEnabled},
          {"isChecked", isChecked},
          {"key", key},
          {"icon", static_cast<int>(icon)},
          {"children", children}};
}

inline void from_json(const nlohmann::json& form, StatusMenuItem& item) {
  item.kind = enumerated(form.at("kind"), StatusMenuItem::Kind::submenu);
  item.icon = enumerated(form.at("icon"), StatusMenuIcon::whisper);
  readInto(form.at("id"), item.id);
  form.at("title").get_to(item.title);
  readInto(form.at("isEnabled"), item.isEnabled);
  item.isChecked = form.at("isChecked").get<std::optional<bool>>();
  form.at("key").get_to(item.key);
  form.at("children").get_to(item.children);
}

}  // namespace quillmere

namespace quillmere::wire {

// To the icon.
constexpr const char* statusItemShow = "statusItemShow";
constexpr const char* statusItemMenu = "statusItemMenu";        ///< items.
constexpr const char* statusItemToolTip = "statusItemToolTip";  ///< text.

// From the icon.
constexpr const char* statusItemAvailable = "statusItemAvailable";  ///< isAvailable.
constexpr const char* statusItemActivated = "statusItemActivated";
constexpr const char* statusItemChosen = "statusItemChosen";  ///< id.
constexpr const char* statusItemAboutToShow = "statusItemAboutToShow";
constexpr const char* statusItemScroll = "statusItemScroll";  ///< angleDelta.

}  // namespace quillmere::wire
