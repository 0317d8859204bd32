// Menus for tests, written briefly, and what is said of them as text.
#pragma once

#include <gio/gio.h>

#include <string>
#include <utility>
#include <vector>

#include "../support/FilteredBus.h"
#include "platform/StatusItem.h"
#include "platform/linux/bus/Handles.h"

namespace quillmere::samples {

inline StatusMenuItem action(int id, std::string title) {
  StatusMenuItem item;
  item.id = id;
  item.title = std::move(title);
  return item;
}

inline StatusMenuItem separator(int id) {
  StatusMenuItem item;
  item.id = id;
  item.kind = StatusMenuItem::Kind::separator;
  return item;
}

inline StatusMenuItem submenu(int id, std::string title, std::vector<StatusMenuItem> children) {
  auto item = action(id, std::move(title));
  item.kind = StatusMenuItem::Kind::submenu;
  item.children = std::move(children);
  return item;
}

inline StatusMenuItem choice(int id, std::string title, bool isChecked) {
  auto item = action(id, std::move(title));
  item.isChecked = isChecked;
  return item;
}

inline std::string printed(const bus::Variant& value) { return support::printed(value.get()); }

/// Open (key 0), a line, Whisper with its mark, a timer, two profiles of which the second is on, Quit.
inline std::vector<StatusMenuItem> menu() {
  auto open = action(1, "Open Window");
  open.key = "0";
  auto whisper = action(3, "Engage Whisper Mode");
  whisper.icon = StatusMenuIcon::whisper;
  return {open,
          separator(2),
          whisper,
          submenu(4, "Sleep Timer", {action(5, "15 minutes"), action(6, "30 minutes")}),
          submenu(7, "Profiles", {choice(8, "Morning", false), choice(9, "Rock & Roll_2", true)}),
          action(10, "Quit")};
}

}  // namespace quillmere::samples
