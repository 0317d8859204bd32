// The menu's tree in GLib's values.
#include "statusitem/BusMenu.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <utility>

namespace quillmere::statusitem {
namespace {

using Kind = StatusMenuItem::Kind;
using bus::owned;
using bus::Variant;

/// The bus takes no text that is not UTF-8.
Variant text(const std::string& source) {
  char* valid = g_utf8_make_valid(source.data(), static_cast<gssize>(source.size()));
  auto value = owned(g_variant_new_string(valid));
  g_free(valid);
  return value;
}

Variant label(const std::string& title) {
  // A single underscore would mark the letter after it.
  std::string escaped;
  for (const char character : title) {
    escaped += character;
    if (character == '_') escaped += '_';
  }
  return text(escaped);
}

/// The names of keys that would read as something else between others.
std::string keyName(const std::string& key) {
  if (key == "+") return "plus";
  if (key == "-") return "minus";
  std::string name = key;
  for (char& character : name) character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return name;
}

Variant shortcut(const std::string& key) {
  GVariantBuilder keys;
  g_variant_builder_init(&keys, G_VARIANT_TYPE("aas"));
  g_variant_builder_open(&keys, G_VARIANT_TYPE_STRING_ARRAY);
  g_variant_builder_add(&keys, "s", "Control");
  g_variant_builder_add_value(&keys, text(keyName(key)).get());
  g_variant_builder_close(&keys);
  return owned(g_variant_builder_end(&keys));
}

bool isWanted(const std::vector<std::string>& names, const std::string& name) {
  return names.empty() || std::ranges::find(names, name) != names.end();
}

const StatusMenuItem* findBelow(const StatusMenuItem& parent, int id) {
  for (const auto& child : parent.children) {
    if (child.id == id) return &child;
    if (const auto* found = findBelow(child, id)) return found;
  }
  return nullptr;
}

void forEachBelow(const StatusMenuItem& parent, const std::function<void(const StatusMenuItem&)>& visit) {
  for (const auto& child : parent.children) {
    visit(child);
    forEachBelow(child, visit);
  }
}

bool haveSameLists(const std::vector<StatusMenuItem>& left, const std::vector<StatusMenuItem>& right) {
  return std::ranges::equal(
      left, right, [](const auto& one, const auto& other) { return one.id == other.id && one.kind == other.kind; });
}

}  // namespace

Variant MenuChange::propertiesUpdated() const {
  GVariantBuilder updated;
  GVariantBuilder removed;
  g_variant_builder_init(&updated, G_VARIANT_TYPE("a(ia{sv})"));
  g_variant_builder_init(&removed, G_VARIANT_TYPE("a(ias)"));
  for (const auto& entry : properties) {
    if (!entry.changed.empty()) {
      g_variant_builder_open(&updated, G_VARIANT_TYPE("(ia{sv})"));
      g_variant_builder_add(&updated, "i", entry.id);
      g_variant_builder_open(&updated, G_VARIANT_TYPE_VARDICT);
      for (const auto& [name, value] : entry.changed) {
        g_variant_builder_add(&updated, "{sv}", name.c_str(), value.get());
      }
      g_variant_builder_close(&updated);
      g_variant_builder_close(&updated);
    }
    if (!entry.removed.empty()) {
      g_variant_builder_open(&removed, G_VARIANT_TYPE("(ias)"));
      g_variant_builder_add(&removed, "i", entry.id);
      g_variant_builder_open(&removed, G_VARIANT_TYPE_STRING_ARRAY);
      for (const auto& name : entry.removed) g_variant_builder_add(&removed, "s", name.c_str());
      g_variant_builder_close(&removed);
      g_variant_builder_close(&removed);
    }
  }
  return owned(g_variant_new("(a(ia{sv})a(ias))", &updated, &removed));
}

MenuChange BusMenu::replace(std::vector<StatusMenuItem> items) {
  StatusMenuItem next = root_;
  next.children = std::move(items);
  MenuChange change;
  collectParents(root_, next, change.parents);
  forEachBelow(next, [&](const StatusMenuItem& item) {
    if (const auto* before = find(item.id)) addChanges(*before, properties(item), item.id, change);
  });
  root_ = std::move(next);
  if (!change.parents.empty()) ++revision_;
  return change;
}

MenuChange BusMenu::setInk(Ink ink) {
  MenuChange change;
  if (ink == ink_) return change;
  ink_ = ink;
  forEachBelow(root_, [&](const StatusMenuItem& item) {
    auto mark = property(item.id, "icon-data");
    // A line has none, whatever it was given.
    if (!mark) return;
    MenuChange::Properties entry;
    entry.id = item.id;
    entry.changed.emplace("icon-data", std::move(mark));
    change.properties.push_back(std::move(entry));
  });
  return change;
}

void BusMenu::collectParents(const StatusMenuItem& before, const StatusMenuItem& after,
                             std::vector<int>& parents) const {
  if (!haveSameLists(before.children, after.children)) parents.push_back(after.id);
  for (const auto& child : after.children) {
    const auto old = std::ranges::find(before.children, child.id, &StatusMenuItem::id);
    if (old != before.children.end() && old->kind == child.kind) collectParents(*old, child, parents);
  }
}

void BusMenu::addChanges(const StatusMenuItem& before, const PropertyMap& after, int id, MenuChange& change) const {
  auto old = properties(before);
  MenuChange::Properties entry;
  entry.id = id;
  for (const auto& [name, value] : after) {
    const auto found = old.find(name);
    if (found == old.end() || g_variant_equal(found->second.get(), value.get()) == FALSE) {
      entry.changed.emplace(name, Variant(g_variant_ref(value.get())));
    }
    if (found != old.end()) old.erase(found);
  }
  for (const auto& [name, value] : old) entry.removed.push_back(name);
  if (!entry.changed.empty() || !entry.removed.empty()) change.properties.push_back(std::move(entry));
}

const StatusMenuItem* BusMenu::find(int id) const { return id == 0 ? &root_ : findBelow(root_, id); }

bool BusMenu::contains(int id) const { return find(id) != nullptr; }

bool BusMenu::canBeChosen(int id) const {
  const auto* item = find(id);
  return item != nullptr && item->kind == Kind::action && item->isEnabled;
}

BusMenu::PropertyMap BusMenu::properties(const StatusMenuItem& item) const {
  PropertyMap map;
  if (item.id == 0) {
    map["children-display"] = owned(g_variant_new_string("submenu"));
    return map;
  }
  if (item.kind == Kind::separator) {
    map["type"] = owned(g_variant_new_string("separator"));
    return map;
  }
  const bool isEmptySubmenu = item.kind == Kind::submenu && item.children.empty();
  map["label"] = label(item.title);
  map["enabled"] = owned(g_variant_new_boolean(static_cast<gboolean>(item.isEnabled && !isEmptySubmenu)));
  if (item.kind == Kind::submenu) map["children-display"] = owned(g_variant_new_string("submenu"));
  if (item.isChecked) {
    map["toggle-type"] = owned(g_variant_new_string("checkmark"));
    map["toggle-state"] = owned(g_variant_new_int32(*item.isChecked ? 1 : 0));
  }
  if (!item.key.empty()) map["shortcut"] = shortcut(item.key);
  if (item.icon == StatusMenuIcon::whisper) {
    const auto png = whisperPng(ink_);
    map["icon-data"] = owned(g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, png.data(), png.size(), 1));
  }
  return map;
}

GVariant* BusMenu::dictionary(const StatusMenuItem& item, const std::vector<std::string>& names) const {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  for (const auto& [name, value] : properties(item)) {
    if (isWanted(names, name)) g_variant_builder_add(&builder, "{sv}", name.c_str(), value.get());
  }
  return g_variant_builder_end(&builder);
}

GVariant* BusMenu::node(const StatusMenuItem& item, int depth, const std::vector<std::string>& names) const {
  GVariantBuilder children;
  g_variant_builder_init(&children, G_VARIANT_TYPE("av"));
  if (depth != 0) {
    for (const auto& child : item.children) {
      g_variant_builder_add(&children, "v", node(child, depth < 0 ? depth : depth - 1, names));
    }
  }
  return g_variant_new("(i@a{sv}av)", item.id, dictionary(item, names), &children);
}

Variant BusMenu::layout(int parent, int depth, const std::vector<std::string>& names) const {
  const auto* item = find(parent);
  if (item == nullptr) return nullptr;
  return owned(g_variant_new("(u@(ia{sv}av))", revision_, node(*item, depth, names)));
}

Variant BusMenu::groupProperties(const std::vector<int>& ids, const std::vector<std::string>& names) const {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ia{sv})"));
  const auto add = [&](const StatusMenuItem& item) {
    g_variant_builder_add(&builder, "(i@a{sv})", item.id, dictionary(item, names));
  };
  if (ids.empty()) {
    add(root_);
    forEachBelow(root_, add);
  }
  for (const auto id : ids) {
    if (const auto* item = find(id)) add(*item);
  }
  return owned(g_variant_new("(a(ia{sv}))", &builder));
}

Variant BusMenu::property(int id, const std::string& name) const {
  const auto* item = find(id);
  if (item == nullptr) return nullptr;
  auto map = properties(*item);
  const auto found = map.find(name);
  return found == map.end() ? nullptr : std::move(found->second);
}

}  // namespace quillmere::statusitem
