// A panel in a message filter: no object of GDBus's own stands between the test and the wire.
#include "FakePanel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmere::support {
namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* item = "org.kde.StatusNotifierItem";
constexpr const char* menu = "com.canonical.dbusmenu";

std::shared_ptr<GVariant> shared(GVariant* value) {
  return value == nullptr ? nullptr : std::shared_ptr<GVariant>(value, g_variant_unref);
}

}  // namespace

FakePanel::FakePanel(const std::string& address) : bus_(address) {
  if (bus_.connection() == nullptr) return;
  bus_.listen([this](GDBusMessage* message) { return filter(message); });
  for (const auto* interface : {item, menu}) {
    const auto rule = std::string("type='signal',interface='") + interface + "'";
    g_variant_unref(busCall("AddMatch", g_variant_new("(s)", rule.c_str())));
  }
}

GDBusMessage* FakePanel::filter(GDBusMessage* message) {
  const std::string interface = g_dbus_message_get_interface(message) ? g_dbus_message_get_interface(message) : "";
  const std::string member = g_dbus_message_get_member(message) ? g_dbus_message_get_member(message) : "";
  GVariant* body = g_dbus_message_get_body(message);
  const std::lock_guard lock(mutex_);
  if (g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_SIGNAL) {
    if (interface == item || interface == menu) signals_.push_back({member, printed(body)});
    return message;
  }
  if (g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) return message;
  GDBusMessage* reply = nullptr;
  if (!hangs_) {
    reply = g_dbus_message_new_method_reply(message);
    if (interface == watcher && member == "RegisterStatusNotifierItem" && !refuses_) {
      const char* service = nullptr;
      g_variant_get(body, "(&s)", &service);
      registrations_.emplace_back(service);
      if (isSilent_) {
        g_object_unref(reply);
        g_object_unref(message);
        return nullptr;
      }
    } else if (interface == properties && member == "Get") {
      g_dbus_message_set_body(reply, g_variant_new("(v)", g_variant_new_boolean(static_cast<gboolean>(hasHost_))));
    } else if (interface == settings && member == "Read") {
      g_dbus_message_set_body(reply, g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(colorScheme_))));
    } else {
      g_object_unref(reply);
      reply = g_dbus_message_new_method_error(message, "org.freedesktop.DBus.Error.Failed", "not today");
    }
    g_dbus_connection_send_message(bus_.connection(), reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(reply);
  }
  g_object_unref(message);
  return nullptr;
}

GVariant* FakePanel::busCall(const char* method, GVariant* arguments) {
  GError* error = nullptr;
  GVariant* reply = g_dbus_connection_call_sync(bus_.connection(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", method, arguments, nullptr,
                                                G_DBUS_CALL_FLAGS_NONE, 20000, nullptr, &error);
  if (reply == nullptr) {
    ADD_FAILURE() << error->message;
    g_error_free(error);
    return g_variant_ref_sink(g_variant_new("()"));
  }
  return reply;
}

void FakePanel::emit(const char* path, const char* interface, const char* signal, GVariant* body) {
  g_dbus_connection_emit_signal(bus_.connection(), nullptr, path, interface, signal, body, nullptr);
}

void FakePanel::takeName(const std::string& name) {
  g_variant_unref(busCall("RequestName", g_variant_new("(su)", name.c_str(), 0U)));
}

void FakePanel::comeAsWatcher(bool hasHost) {
  {
    const std::lock_guard lock(mutex_);
    hasHost_ = hasHost;
  }
  takeName(watcher);
}

void FakePanel::leaveAsWatcher() {
  {
    const std::lock_guard lock(mutex_);
    registrations_.clear();
  }
  g_variant_unref(busCall("ReleaseName", g_variant_new("(s)", watcher)));
}

void FakePanel::setHost(bool hasHost) {
  {
    const std::lock_guard lock(mutex_);
    hasHost_ = hasHost;
  }
  emit(watcherPath, watcher, hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", nullptr);
}

void FakePanel::setRefuses(bool refuses) {
  const std::lock_guard lock(mutex_);
  refuses_ = refuses;
}

void FakePanel::setSilent() {
  const std::lock_guard lock(mutex_);
  isSilent_ = true;
}

void FakePanel::hang() {
  const std::lock_guard lock(mutex_);
  hangs_ = true;
}

void FakePanel::comeAsPortal(std::uint32_t colorScheme) {
  {
    const std::lock_guard lock(mutex_);
    colorScheme_ = colorScheme;
  }
  takeName(portal);
}

void FakePanel::changeColorScheme(std::uint32_t colorScheme) {
  emitSetting("org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(colorScheme));
}

void FakePanel::emitSetting(const std::string& group, const std::string& key, GVariant* value) {
  emit(portalPath, settings, "SettingChanged", g_variant_new("(ssv)", group.c_str(), key.c_str(), value));
}

std::vector<std::string> FakePanel::registrations() const {
  const std::lock_guard lock(mutex_);
  return registrations_;
}

FakePanel::Answer FakePanel::call(const char* path, const char* interface, const char* method,
                                  const std::string& arguments) {
  const auto known = registrations();
  if (known.empty()) {
    ADD_FAILURE() << "no item has registered";
    return {};
  }
  GError* error = nullptr;
  GVariant* body = g_variant_parse(nullptr, arguments.c_str(), nullptr, nullptr, &error);
  if (body == nullptr) {
    ADD_FAILURE() << arguments << ": " << error->message;
    g_error_free(error);
    return {};
  }
  Answer answer;
  answer.value =
      shared(g_dbus_connection_call_sync(bus_.connection(), known.back().c_str(), path, interface, method, body,
                                         nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, 20000, nullptr, &error));
  g_variant_unref(body);
  if (error != nullptr) {
    char* name = g_dbus_error_get_remote_error(error);
    answer.error = name == nullptr ? error->message : name;
    g_free(name);
    g_error_free(error);
  }
  return answer;
}

FakePanel::Answer FakePanel::callMenu(const char* method, const std::string& arguments) {
  return call("/MenuBar", menu, method, arguments);
}

FakePanel::Answer FakePanel::callItem(const char* method, const std::string& arguments) {
  return call("/StatusNotifierItem", item, method, arguments);
}

std::shared_ptr<GVariant> FakePanel::propertyValue(const char* path, const char* interface, const std::string& name) {
  const auto answer = call(path, properties, "Get", std::string("('") + interface + "', '" + name + "')");
  if (!answer.value) return nullptr;
  GVariant* value = nullptr;
  g_variant_get(answer.value.get(), "(v)", &value);
  return shared(value);
}

std::string FakePanel::property(const char* path, const char* interface, const std::string& name) {
  return printed(propertyValue(path, interface, name).get());
}

std::vector<FakePanel::Signal> FakePanel::signals() const {
  const std::lock_guard lock(mutex_);
  return signals_;
}

int FakePanel::signalCount(const std::string& member) const {
  const auto all = signals();
  return static_cast<int>(std::ranges::count(all, member, &Signal::member));
}

}  // namespace quillmere::support
