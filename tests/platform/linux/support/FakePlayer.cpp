// A media player in a message filter: no object of GDBus's own stands between the test and the wire.
#include "FakePlayer.h"

#include <gtest/gtest.h>

#include <cstring>

namespace quillmere::support {
namespace {

constexpr const char* path = "/org/mpris/MediaPlayer2";
constexpr const char* player = "org.mpris.MediaPlayer2.Player";

}  // namespace

FakePlayer::FakePlayer(const std::string& address, const std::string& name, Manner manner)
    : manner_(manner), bus_(address) {
  if (bus_.connection() == nullptr) return;
  bus_.listen([this](GDBusMessage* message) { return filter(message); });
  GError* error = nullptr;
  const auto busName = "org.mpris.MediaPlayer2." + name;
  GVariant* reply = g_dbus_connection_call_sync(
      bus_.connection(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      g_variant_new("(su)", busName.c_str(), 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, 10000, nullptr, &error);
  if (reply == nullptr) {
    ADD_FAILURE() << error->message;
    g_error_free(error);
    return;
  }
  g_variant_unref(reply);
}

GDBusMessage* FakePlayer::filter(GDBusMessage* message) {
  if (g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) return message;
  if (g_strcmp0(g_dbus_message_get_path(message), path) != 0) return message;
  {
    const std::lock_guard lock(mutex_);
    if (g_strcmp0(g_dbus_message_get_interface(message), player) == 0) {
      calls_.emplace_back(g_dbus_message_get_member(message));
    } else {
      ++questions_;
    }
    if (manner_ == Manner::holds) {
      held_.emplace_back(message);
      return nullptr;
    }
  }
  answer(message);
  g_object_unref(message);
  return nullptr;
}

GVariant* FakePlayer::value(const std::string& property) const {
  const auto found = properties_.find(property);
  if (found == properties_.end()) return nullptr;
  GVariant* parsed = g_variant_parse(nullptr, found->second.c_str(), nullptr, nullptr, nullptr);
  EXPECT_NE(parsed, nullptr) << found->second;
  return parsed;
}

void FakePlayer::answer(GDBusMessage* question) {
  const std::string interface = g_dbus_message_get_interface(question);
  const std::string member = g_dbus_message_get_member(question);
  GDBusMessage* reply = nullptr;
  std::string follow;
  {
    const std::lock_guard lock(mutex_);
    GVariant* body = g_dbus_message_get_body(question);
    if (manner_ == Manner::refuses) {
      reply = g_dbus_message_new_method_error(question, "org.freedesktop.DBus.Error.Failed", "not today");
    } else if (interface == properties && member == "GetAll") {
      reply = g_dbus_message_new_method_reply(question);
      if (const auto whole = properties_.find("*"); whole != properties_.end()) {
        g_dbus_message_set_body(reply, value("*"));
      } else {
        GVariantBuilder builder;
        g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
        for (const auto& [name, text] : properties_) {
          g_variant_builder_add(&builder, "{sv}", name.c_str(), value(name));
        }
        g_dbus_message_set_body(reply, g_variant_new("(a{sv})", &builder));
      }
    } else if (interface == properties && member == "Get") {
      const char* name = nullptr;
      g_variant_get(body, "(&s&s)", nullptr, &name);
      if (GVariant* found = value(name)) {
        reply = g_dbus_message_new_method_reply(question);
        g_dbus_message_set_body(reply, g_variant_new("(v)", found));
      } else {
        reply = g_dbus_message_new_method_error(question, "org.freedesktop.DBus.Error.UnknownProperty", "none");
      }
    } else {
      reply = g_dbus_message_new_method_reply(question);
      const bool plays = properties_["PlaybackStatus"] == "'Playing'";
      if (obeys_ && (member == "Pause" || (member == "PlayPause" && plays))) follow = "'Paused'";
      if (obeys_ && (member == "Play" || (member == "PlayPause" && !plays))) follow = "'Playing'";
    }
  }
  g_dbus_connection_send_message(bus_.connection(), reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
  g_object_unref(reply);
  if (!follow.empty()) change("PlaybackStatus", follow);
}

void FakePlayer::set(const std::string& property, const std::string& text) {
  const std::lock_guard lock(mutex_);
  properties_[property] = text;
}

void FakePlayer::emit(const char* interface, const char* signal, GVariant* body) {
  g_dbus_connection_emit_signal(bus_.connection(), nullptr, path, interface, signal, body, nullptr);
}

void FakePlayer::change(const std::string& property, const std::string& text) {
  set(property, text);
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  {
    const std::lock_guard lock(mutex_);
    g_variant_builder_add(&builder, "{sv}", property.c_str(), value(property));
  }
  emit(properties, "PropertiesChanged", g_variant_new("(sa{sv}as)", player, &builder, nullptr));
}

void FakePlayer::setTrack(const std::string& title, const std::string& status) {
  change("Metadata", "{'xesam:title': <'" + title + "'>}");
  change("PlaybackStatus", "'" + status + "'");
}

void FakePlayer::invalidate(const std::string& property) {
  GVariantBuilder names;
  g_variant_builder_init(&names, G_VARIANT_TYPE_STRING_ARRAY);
  g_variant_builder_add(&names, "s", property.c_str());
  emit(properties, "PropertiesChanged", g_variant_new("(sa{sv}as)", player, nullptr, &names));
}

void FakePlayer::emitSeeked(std::int64_t micros) {
  emit(player, "Seeked", g_variant_new("(x)", static_cast<gint64>(micros)));
}

void FakePlayer::emitRaw(const std::string& body) {
  GVariant* parsed = g_variant_parse(nullptr, body.c_str(), nullptr, nullptr, nullptr);
  ASSERT_NE(parsed, nullptr) << body;
  emit(properties, "PropertiesChanged", parsed);
}

void FakePlayer::release() {
  decltype(held_) held;
  {
    const std::lock_guard lock(mutex_);
    manner_ = Manner::answers;
    held.swap(held_);
  }
  for (const auto& message : held) answer(message.get());
}

void FakePlayer::obey() {
  const std::lock_guard lock(mutex_);
  obeys_ = true;
}

std::vector<std::string> FakePlayer::calls() const {
  const std::lock_guard lock(mutex_);
  return calls_;
}

int FakePlayer::questionCount() const {
  const std::lock_guard lock(mutex_);
  return questions_;
}

}  // namespace quillmere::support
