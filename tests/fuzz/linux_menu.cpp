// What a panel may call of the icon and of its menu, with any arguments of the right types, while the menu changes.
// Answers are of the types that the interface promises; a panel that follows what it is told of the changes shows what
// one that asks for everything anew would show.
#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "statusitem/BusMenu.h"
#include "statusitem/HostCalls.h"
#include "statusitem/Interfaces.h"
#include "support/AnyVariant.h"
#include "support/Bytes.h"
#include "support/Require.h"

namespace {

using namespace quillmere;
using namespace quillmere::statusitem;
using bus::Variant;

constexpr std::array<std::string_view, 18> words{
    "label",   "enabled",  "children-display", "toggle-type", "toggle-state", "shortcut", "icon-data", "type",
    "visible", "clicked",  "opened",           "hovered",     "closed",       "vertical", "Vertical",  "horizontal",
    "",        "a_b__\xFF"};

/// Few, so that they meet.
constexpr int mostItems = 12;

const GDBusMethodInfo& anyMethod(fuzz::Bytes& in, const char* interface) {
  static GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(introspection, nullptr);
  auto** const methods = g_dbus_node_info_lookup_interface(node, interface)->methods;
  std::size_t count = 0;
  while (methods[count] != nullptr) ++count;
  return *methods[in.below(count)];
}

std::string signature(GDBusArgInfo** arguments) {
  std::string types = "(";
  for (auto* each = arguments; each != nullptr && *each != nullptr; ++each) types += (*each)->signature;
  return types + ")";
}

/// A value of this type.
GVariant* valueOf(fuzz::Bytes& in, const GVariantType* type) {
  if (g_variant_type_equal(type, G_VARIANT_TYPE_INT32)) {
    return g_variant_new_int32(in.byte() < 0xE0 ? static_cast<int>(in.below(mostItems + 2))
                                                : in.number<std::int32_t>());
  }
  if (g_variant_type_equal(type, G_VARIANT_TYPE_UINT32)) return g_variant_new_uint32(in.number<std::uint32_t>());
  if (g_variant_type_equal(type, G_VARIANT_TYPE_STRING)) {
    return fuzz::busText(in.byte() < 0xD0 ? in.oneOf(words) : in.longText());
  }
  if (g_variant_type_equal(type, G_VARIANT_TYPE_VARIANT)) return g_variant_new_variant(fuzz::anyVariant(in, words));
  if (g_variant_type_is_array(type)) {
    GVariantBuilder list;
    g_variant_builder_init(&list, type);
    for (auto left = in.below(6); left > 0; --left) {
      g_variant_builder_add_value(&list, valueOf(in, g_variant_type_element(type)));
    }
    return g_variant_builder_end(&list);
  }
  QUILLMERE_REQUIRE(g_variant_type_is_tuple(type));
  GVariantBuilder members;
  g_variant_builder_init(&members, type);
  for (const auto* each = g_variant_type_first(type); each != nullptr; each = g_variant_type_next(each)) {
    g_variant_builder_add_value(&members, valueOf(in, each));
  }
  return g_variant_builder_end(&members);
}

bool isOf(const Variant& value, const std::string& type) {
  return g_variant_is_of_type(value.get(), G_VARIANT_TYPE(type.c_str())) != FALSE &&
         g_variant_is_normal_form(value.get()) != FALSE;
}

/// What a panel shows.
struct Shown {
  std::map<std::string, std::string> properties;
  std::vector<int> children;
  int parent = -1;

  friend bool operator==(const Shown&, const Shown&) = default;
};
using Mirror = std::map<int, Shown>;

std::string printed(GVariant* value) {
  char* text = g_variant_print(value, TRUE);
  std::string copy(text);
  g_free(text);
  return copy;
}

/// @param depth  of the deepest entry below this one
int take(GVariant* node, Mirror& mirror, int parent) {
  gint32 id = 0;
  g_variant_get_child(node, 0, "i", &id);
  QUILLMERE_REQUIRE(!mirror.contains(id));
  auto& shown = mirror[id];
  shown.parent = parent;
  const Variant properties(g_variant_get_child_value(node, 1));
  for (gsize at = 0; at < g_variant_n_children(properties.get()); ++at) {
    const Variant entry(g_variant_get_child_value(properties.get(), at));
    const char* name = nullptr;
    GVariant* value = nullptr;
    g_variant_get(entry.get(), "{&sv}", &name, &value);
    shown.properties[name] = printed(value);
    g_variant_unref(value);
  }
  const Variant children(g_variant_get_child_value(node, 2));
  int depth = 0;
  for (gsize at = 0; at < g_variant_n_children(children.get()); ++at) {
    const Variant boxed(g_variant_get_child_value(children.get(), at));
    const Variant child(g_variant_get_variant(boxed.get()));
    gint32 childID = 0;
    g_variant_get_child(child.get(), 0, "i", &childID);
    mirror[id].children.push_back(childID);
    depth = std::max(depth, 1 + take(child.get(), mirror, id));
  }
  return depth;
}

int take(const Variant& layout, Mirror& mirror, int parent = -1) {
  QUILLMERE_REQUIRE(layout && isOf(layout, "(u(ia{sv}av))"));
  const Variant node(g_variant_get_child_value(layout.get(), 1));
  return take(node.get(), mirror, parent);
}

void drop(int id, Mirror& mirror) {
  const auto shown = mirror.extract(id);
  if (shown.empty()) return;
  for (const auto child : shown.mapped().children) {
    // One that has moved shows elsewhere by now.
    if (const auto found = mirror.find(child); found != mirror.end() && found->second.parent == id) drop(child, mirror);
  }
}

class World {
 public:
  explicit World(fuzz::Bytes& in) : in_(in) { take(menu_.layout(0, -1, {}), mirror_); }

  void run() {
    for (int left = 24; left > 0 && !in_.isEmpty(); --left) step();
  }

 private:
  void step() {
    switch (in_.below(5)) {
      case 0: {
        std::set<int> taken;
        follow(menu_.replace(anyItems(taken, 0)));
        break;
      }
      case 1:
        follow(menu_.setInk(in_.flag() ? menuInk(in_.flag()) : menuInk(std::nullopt)));
        break;
      case 2:
        callItem();
        break;
      default:
        callMenu();
        break;
    }
  }

  std::vector<StatusMenuItem> anyItems(std::set<int>& taken, int depth) {
    std::vector<StatusMenuItem> items;
    for (auto left = in_.below(6); left > 0; --left) {
      StatusMenuItem item;
      item.id = 1 + static_cast<int>(in_.below(mostItems));
      // Each id stands in a menu once.
      if (!taken.insert(item.id).second) continue;
      item.kind = static_cast<StatusMenuItem::Kind>(in_.below(3));
      item.title = in_.flag() ? std::string(in_.oneOf(words)) : std::string(in_.text());
      item.isEnabled = in_.byte() < 0xC0;
      if (in_.byte() > 0xC0) item.isChecked = in_.flag();
      if (in_.byte() > 0xC0) item.key = std::string(in_.text());
      if (in_.byte() > 0xE0) item.icon = StatusMenuIcon::whisper;
      if (item.kind == StatusMenuItem::Kind::submenu && depth < 3) item.children = anyItems(taken, depth + 1);
      items.push_back(std::move(item));
    }
    return items;
  }

  /// As a panel does: asks anew for lists that are others, and takes over the properties that it is told.
  void follow(const MenuChange& change) {
    for (const auto parent : change.parents) {
      const auto known = mirror_.find(parent);
      if (known == mirror_.end()) continue;
      Mirror fresh;
      take(menu_.layout(parent, -1, {}), fresh, known->second.parent);
      drop(parent, mirror_);
      // An entry that has moved here shows here alone.
      for (auto& [id, shown] : fresh) {
        drop(id, mirror_);
        mirror_[id] = std::move(shown);
      }
    }
    QUILLMERE_REQUIRE(isOf(change.propertiesUpdated(), "(a(ia{sv})a(ias))"));
    for (const auto& entry : change.properties) {
      QUILLMERE_REQUIRE(menu_.contains(entry.id));
      const auto shown = mirror_.find(entry.id);
      if (shown == mirror_.end()) continue;
      for (const auto& [name, value] : entry.changed) shown->second.properties[name] = printed(value.get());
      for (const auto& name : entry.removed) shown->second.properties.erase(name);
    }
    Mirror whole;
    take(menu_.layout(0, -1, {}), whole);
    for (const auto& [id, shown] : whole) {
      const auto mirrored = mirror_.find(id);
      QUILLMERE_REQUIRE(mirrored != mirror_.end() && mirrored->second == shown);
    }
    mirror_ = std::move(whole);
  }

  void callItem() {
    const auto& method = anyMethod(in_, itemInterface);
    const auto arguments = bus::owned(valueOf(in_, G_VARIANT_TYPE(signature(method.in_args).c_str())));
    const auto call = readItemCall(method.name, arguments.get());
    QUILLMERE_REQUIRE(call.activation.has_value() + call.angleDelta.has_value() + call.activationToken.has_value() <=
                      1);
    if (call.angleDelta) QUILLMERE_REQUIRE(*call.angleDelta != 0 && std::abs(*call.angleDelta) <= 12000);
    if (call.activationToken) QUILLMERE_REQUIRE(call.activationToken->size() <= 1024);
  }

  void callMenu() {
    const auto& method = anyMethod(in_, menuInterface);
    const auto types = signature(method.in_args);
    const auto arguments = in_.byte() < 0xF0 ? bus::owned(valueOf(in_, G_VARIANT_TYPE(types.c_str())))
                                             : fuzz::variantFromBytes(in_.longText(), types.c_str());
    const auto call = readMenuCall(menu_, method.name, arguments.get());
    const auto answer = signature(method.out_args);
    if (call.kind == MenuCall::Kind::question) {
      for (const bool needsUpdate : {false, true}) {
        QUILLMERE_REQUIRE(isOf(answerTo(call, needsUpdate), answer));
      }
    } else if (call.kind == MenuCall::Kind::answered) {
      // Nothing where nothing is promised.
      QUILLMERE_REQUIRE(call.reply ? isOf(call.reply, answer) : answer == "()");
    } else {
      QUILLMERE_REQUIRE(!call.reply && call.events.empty());
    }
    for (const auto& event : call.events) QUILLMERE_REQUIRE(menu_.contains(event.id));
    requireMeaning(method.name, arguments.get(), call);
  }

  void requireMeaning(std::string_view method, GVariant* arguments, const MenuCall& call) {
    if (method == "GetLayout") {
      gint32 parent = 0;
      gint32 depth = 0;
      g_variant_get_child(arguments, 0, "i", &parent);
      g_variant_get_child(arguments, 1, "i", &depth);
      QUILLMERE_REQUIRE((call.kind == MenuCall::Kind::answered) == menu_.contains(parent));
      if (!call.reply) return;
      Mirror told;
      const int deepest = take(call.reply, told);
      QUILLMERE_REQUIRE(told.contains(parent) && (depth < 0 || deepest <= depth));
      for (const auto& [id, shown] : told) QUILLMERE_REQUIRE(menu_.contains(id));
    } else if (method == "EventGroup" || method == "AboutToShowGroup") {
      const Variant asked(g_variant_get_child_value(arguments, 0));
      QUILLMERE_REQUIRE(call.kind != MenuCall::Kind::refused);
      if (call.kind == MenuCall::Kind::question) {
        QUILLMERE_REQUIRE(call.known.size() + call.unknown.size() == g_variant_n_children(asked.get()));
        QUILLMERE_REQUIRE(std::ranges::none_of(call.unknown, [&](int id) { return menu_.contains(id); }));
      } else {
        const Variant unknown(g_variant_get_child_value(call.reply.get(), 0));
        QUILLMERE_REQUIRE(call.events.size() + g_variant_n_children(unknown.get()) ==
                          g_variant_n_children(asked.get()));
      }
    }
  }

  fuzz::Bytes& in_;
  BusMenu menu_;
  Mirror mirror_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  World(in).run();
  return 0;
}
