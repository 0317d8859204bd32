// Calls of panels, taken apart.
#include "statusitem/HostCalls.h"

#include <algorithm>
#include <utility>

namespace quillmere::statusitem {
namespace {

using bus::owned;
using bus::Variant;

/// A token goes into the environment of a program that is started with it.
constexpr std::size_t longestToken = 1024;

/// The wheel's way in eighths of a degree, positive away from the user; none where it moved sideways.
///
/// The interface leaves both unit and sign to the host. Plasma hands on the angle and spells the orientation with a
/// capital; GNOME's, Xfce's and Sway's panels count steps of the wheel, positive towards the user.
std::optional<int> wheelAngle(int delta, const char* orientation) {
  if (g_ascii_strcasecmp(orientation, "vertical") != 0) return std::nullopt;
  constexpr int notch = 120;
  constexpr int mostSteps = 15;
  constexpr int longestWay = 100 * notch;
  const bool isSteps = g_ascii_islower(orientation[0]) != FALSE && delta > -mostSteps && delta < mostSteps;
  return isSteps ? -delta * notch : std::clamp(delta, -longestWay, longestWay);
}

std::vector<int> integers(GVariant* array) {
  std::vector<int> values;
  for (gsize index = 0; index < g_variant_n_children(array); ++index) {
    gint32 value = 0;
    g_variant_get_child(array, index, "i", &value);
    values.push_back(value);
  }
  return values;
}

std::vector<std::string> strings(GVariant* array) {
  std::vector<std::string> values;
  for (gsize index = 0; index < g_variant_n_children(array); ++index) {
    const char* value = nullptr;
    g_variant_get_child(array, index, "&s", &value);
    values.emplace_back(value);
  }
  return values;
}

GVariant* integerArray(const std::vector<int>& values) {
  return g_variant_new_fixed_array(G_VARIANT_TYPE_INT32, values.data(), values.size(), sizeof(gint32));
}

MenuCall answered(Variant reply) {
  MenuCall call;
  call.kind = MenuCall::Kind::answered;
  call.reply = std::move(reply);
  return call;
}

MenuCall answeredOrRefused(Variant reply) { return reply ? answered(std::move(reply)) : MenuCall(); }

MenuCall eventCall(const BusMenu& menu, int id, GVariant* arguments) {
  if (!menu.contains(id)) return {};
  const char* name = nullptr;
  g_variant_get_child(arguments, 1, "&s", &name);
  auto call = answered(nullptr);
  call.events.push_back({id, name});
  return call;
}

MenuCall eventGroupCall(const BusMenu& menu, GVariant* events) {
  auto call = answered(nullptr);
  std::vector<int> unknown;
  for (gsize index = 0; index < g_variant_n_children(events); ++index) {
    gint32 id = 0;
    const Variant event(g_variant_get_child_value(events, index));
    const char* name = nullptr;
    g_variant_get_child(event.get(), 0, "i", &id);
    g_variant_get_child(event.get(), 1, "&s", &name);
    if (menu.contains(id)) {
      call.events.push_back({id, name});
    } else {
      unknown.push_back(id);
    }
  }
  call.reply = owned(g_variant_new("(@ai)", integerArray(unknown)));
  return call;
}

MenuCall groupQuestion(const BusMenu& menu, const std::vector<int>& ids) {
  MenuCall call;
  call.kind = MenuCall::Kind::question;
  call.isGroup = true;
  for (const auto id : ids) (menu.contains(id) ? call.known : call.unknown).push_back(id);
  return call;
}

MenuCall question(const BusMenu& menu, int id) {
  MenuCall call;
  if (menu.contains(id)) call.kind = MenuCall::Kind::question;
  return call;
}

}  // namespace

ItemCall readItemCall(const std::string& method, GVariant* arguments) {
  ItemCall call;
  if (method == "Activate" || method == "SecondaryActivate") {
    StatusItemPoint point;
    g_variant_get(arguments, "(ii)", &point.x, &point.y);
    call.activation.emplace();
    // Hosts that don't know the place say nought.
    if (point != StatusItemPoint()) call.activation->point = point;
  } else if (method == "Scroll") {
    gint32 delta = 0;
    const char* orientation = nullptr;
    g_variant_get(arguments, "(i&s)", &delta, &orientation);
    const auto angle = wheelAngle(delta, orientation);
    if (angle && *angle != 0) call.angleDelta = angle;
  } else if (method == "ProvideXdgActivationToken") {
    const char* token = nullptr;
    g_variant_get(arguments, "(&s)", &token);
    call.activationToken = token;
    if (call.activationToken->size() > longestToken) call.activationToken->clear();
  }
  // A context click needs nothing: the host shows the menu itself.
  return call;
}

MenuCall readMenuCall(const BusMenu& menu, const std::string& method, GVariant* arguments) {
  const Variant first(g_variant_get_child_value(arguments, 0));
  if (method == "GetLayout") {
    gint32 depth = 0;
    g_variant_get_child(arguments, 1, "i", &depth);
    const Variant names(g_variant_get_child_value(arguments, 2));
    return answeredOrRefused(menu.layout(g_variant_get_int32(first.get()), depth, strings(names.get())));
  }
  if (method == "GetGroupProperties") {
    const Variant names(g_variant_get_child_value(arguments, 1));
    return answered(menu.groupProperties(integers(first.get()), strings(names.get())));
  }
  if (method == "GetProperty") {
    const char* name = nullptr;
    g_variant_get_child(arguments, 1, "&s", &name);
    const auto value = menu.property(g_variant_get_int32(first.get()), name);
    return answeredOrRefused(value ? owned(g_variant_new("(v)", value.get())) : nullptr);
  }
  if (method == "Event") return eventCall(menu, g_variant_get_int32(first.get()), arguments);
  if (method == "EventGroup") return eventGroupCall(menu, first.get());
  if (method == "AboutToShow") return question(menu, g_variant_get_int32(first.get()));
  if (method == "AboutToShowGroup") return groupQuestion(menu, integers(first.get()));
  return {};
}

Variant answerTo(const MenuCall& question, bool needsUpdate) {
  if (!question.isGroup) return owned(g_variant_new("(b)", static_cast<gboolean>(needsUpdate)));
  return owned(g_variant_new("(@ai@ai)", integerArray(needsUpdate ? question.known : std::vector<int>()),
                             integerArray(question.unknown)));
}

}  // namespace quillmere::statusitem
