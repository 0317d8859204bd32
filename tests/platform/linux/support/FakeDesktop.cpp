// A desktop in a message filter.
#include "FakeDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmere::support {
namespace {

constexpr const char* notifications = "org.freedesktop.Notifications";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* requestPath = "/org/freedesktop/portal/desktop/request/";

/// The options of a question are its last argument.
GVariant* optionsOf(GVariant* body) { return g_variant_get_child_value(body, g_variant_n_children(body) - 1); }

GVariant* noResults() {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  return g_variant_builder_end(&builder);
}

GVariant* oneResult(const char* key, GVariant* value) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&builder, "{sv}", key, value);
  return g_variant_builder_end(&builder);
}

}  // namespace

FakeDesktop::FakeDesktop(const std::string& address) : bus_(address) {
  bus_.listen([this](GDBusMessage* message) { return filter(message); });
}

GDBusMessage* FakeDesktop::filter(GDBusMessage* message) {
  if (g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) return message;
  const std::string interface = g_dbus_message_get_interface(message) ? g_dbus_message_get_interface(message) : "";
  const std::string member = g_dbus_message_get_member(message) ? g_dbus_message_get_member(message) : "";
  const std::lock_guard lock(mutex_);
  if (!hangs_) {
    GDBusMessage* reply = answerTo(message, interface, member);
    g_dbus_connection_send_message(bus_.connection(), reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(reply);
    if (interface == "org.freedesktop.portal.Background") {
      // Right behind the reply, as quickly as a portal can be that asks nobody.
      GVariant* options = optionsOf(g_dbus_message_get_body(message));
      gboolean wished = FALSE;
      g_variant_lookup(options, "autostart", "b", &wished);
      g_variant_unref(options);
      const bool starts = autostart_.value_or(wished != FALSE);
      emitResponse(handleFor(message), autostartResponse_,
                   oneResult("autostart", g_variant_new_boolean(static_cast<gboolean>(starts))));
    }
  }
  g_object_unref(message);
  return nullptr;
}

GDBusMessage* FakeDesktop::answerTo(GDBusMessage* message, const std::string& interface, const std::string& member) {
  GVariant* body = g_dbus_message_get_body(message);
  const auto error = [&](const char* name) {
    return g_dbus_message_new_method_error(message, name, "%s", "not today");
  };
  if (interface == properties && member == "Get") {
    const char* of = nullptr;
    g_variant_get(body, "(&s&s)", &of, nullptr);
    const bool isPortals = std::string(of).starts_with("org.freedesktop.portal.");
    if (!isPortals && forbids_) return error("org.freedesktop.DBus.Error.AccessDenied");
    if (isPortals ? !offersShortcuts_ : !tellsInhibited_) return error("org.freedesktop.DBus.Error.InvalidArgs");
    GDBusMessage* reply = g_dbus_message_new_method_reply(message);
    g_dbus_message_set_body(reply,
                            g_variant_new("(v)", isPortals ? g_variant_new_uint32(1) : g_variant_new_boolean(FALSE)));
    return reply;
  }
  if (interface == settingsInterface && member == "ReadAll" && !settings_.empty()) {
    GDBusMessage* reply = g_dbus_message_new_method_reply(message);
    GVariant* settings = g_variant_new_parsed(settings_.c_str());
    g_dbus_message_set_body(reply, g_variant_new_tuple(&settings, 1));
    return reply;
  }
  const bool isFile = interface == "org.freedesktop.portal.FileChooser" && member == "OpenFile" && !refusesFiles_;
  const bool isLogin = interface == "org.freedesktop.portal.Background" && member == "RequestBackground";
  if (!isFile && !isLogin) return error("org.freedesktop.DBus.Error.UnknownMethod");
  const auto handle = handleFor(message);
  if (isFile) {
    fileHandle_ = handle;
    lastFileQuestion_ = printed(body);
    ++dialogues_;
  } else {
    lastAutostart_ = printed(body);
  }
  GDBusMessage* reply = g_dbus_message_new_method_reply(message);
  g_dbus_message_set_body(reply, g_variant_new("(o)", handle.c_str()));
  return reply;
}

std::string FakeDesktop::handleFor(GDBusMessage* message) {
  GVariant* options = optionsOf(g_dbus_message_get_body(message));
  const char* token = "none";
  g_variant_lookup(options, "handle_token", "&s", &token);
  std::string sender = g_dbus_message_get_sender(message);
  sender.erase(0, 1);
  std::ranges::replace(sender, '.', '_');
  auto handle = std::string(requestPath) + (choosesHandles_ ? "t" : sender + "/") + token;
  g_variant_unref(options);
  return handle;
}

void FakeDesktop::emitResponse(const std::string& handle, std::uint32_t response, GVariant* results) {
  g_dbus_connection_emit_signal(bus_.connection(), nullptr, handle.c_str(), "org.freedesktop.portal.Request",
                                "Response", g_variant_new("(u@a{sv})", response, results), nullptr);
}

void FakeDesktop::name(const char* method, GVariant* arguments) {
  GVariant* reply = g_dbus_connection_call_sync(bus_.connection(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                "org.freedesktop.DBus", method, arguments, nullptr,
                                                G_DBUS_CALL_FLAGS_NONE, 20000, nullptr, nullptr);
  EXPECT_NE(reply, nullptr);
  if (reply != nullptr) g_variant_unref(reply);
}

void FakeDesktop::comeAsPortal() { name("RequestName", g_variant_new("(su)", portal, 0U)); }
void FakeDesktop::leaveAsPortal() { name("ReleaseName", g_variant_new("(s)", portal)); }
void FakeDesktop::comeAsNotifications() { name("RequestName", g_variant_new("(su)", notifications, 0U)); }

void FakeDesktop::offerShortcuts(bool offers) {
  const std::lock_guard lock(mutex_);
  offersShortcuts_ = offers;
}

void FakeDesktop::tellInhibited(bool tells) {
  const std::lock_guard lock(mutex_);
  tellsInhibited_ = tells;
}

void FakeDesktop::forbid() {
  const std::lock_guard lock(mutex_);
  forbids_ = true;
}

void FakeDesktop::setAutostart(std::optional<bool> answer, std::uint32_t response) {
  const std::lock_guard lock(mutex_);
  autostart_ = answer;
  autostartResponse_ = response;
}

void FakeDesktop::hang() {
  const std::lock_guard lock(mutex_);
  hangs_ = true;
}

void FakeDesktop::chooseHandles() {
  const std::lock_guard lock(mutex_);
  choosesHandles_ = true;
}

void FakeDesktop::setSettings(std::string text) {
  const std::lock_guard lock(mutex_);
  settings_ = std::move(text);
}

void FakeDesktop::changeSetting(const std::string& space, const std::string& key, const std::string& value) {
  g_dbus_connection_emit_signal(
      bus_.connection(), nullptr, "/org/freedesktop/portal/desktop", settingsInterface, "SettingChanged",
      g_variant_new("(ssv)", space.c_str(), key.c_str(), g_variant_new_parsed(value.c_str())), nullptr);
}

void FakeDesktop::refuseFiles() {
  const std::lock_guard lock(mutex_);
  refusesFiles_ = true;
}

void FakeDesktop::answerFile(const std::optional<std::string>& uri, std::uint32_t cancelled) {
  const std::lock_guard lock(mutex_);
  if (!uri) {
    emitResponse(fileHandle_, cancelled, noResults());
    return;
  }
  const char* const uris[] = {uri->c_str(), nullptr};
  emitResponse(fileHandle_, 0, oneResult("uris", g_variant_new_strv(uris, -1)));
}

int FakeDesktop::dialogues() const {
  const std::lock_guard lock(mutex_);
  return dialogues_;
}

std::string FakeDesktop::lastFileQuestion() const {
  const std::lock_guard lock(mutex_);
  return lastFileQuestion_;
}

std::string FakeDesktop::lastAutostart() const {
  const std::lock_guard lock(mutex_);
  return lastAutostart_;
}

}  // namespace quillmere::support
