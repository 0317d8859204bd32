// Connecting, and going while GDBus is at work.
#include "FilteredBus.h"

#include <gtest/gtest.h>

#include <mutex>
#include <utility>

namespace quillmere::support {

std::string printed(GVariant* value) {
  if (value == nullptr) return "";
  char* text = g_variant_print(value, FALSE);
  std::string copy = text;
  g_free(text);
  return copy;
}

struct FilteredBus::Link {
  std::mutex mutex;
  Filter filter;
};

FilteredBus::FilteredBus(const std::string& address) : link_(std::make_shared<Link>()) {
  GError* error = nullptr;
  const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                       G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  connection_ = g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, &error);
  if (connection_ == nullptr) {
    ADD_FAILURE() << error->message;
    g_error_free(error);
    return;
  }
  g_dbus_connection_set_exit_on_close(connection_, FALSE);
}

void FilteredBus::listen(Filter filter) {
  if (connection_ == nullptr) return;
  link_->filter = std::move(filter);
  filter_ = g_dbus_connection_add_filter(
      connection_,
      [](GDBusConnection*, GDBusMessage* message, gboolean incoming, gpointer data) -> GDBusMessage* {
        if (incoming == FALSE) return message;
        const auto link = *static_cast<std::shared_ptr<Link>*>(data);
        const std::lock_guard lock(link->mutex);
        return link->filter ? link->filter(message) : message;
      },
      new std::shared_ptr<Link>(link_), [](gpointer data) { delete static_cast<std::shared_ptr<Link>*>(data); });
}

FilteredBus::~FilteredBus() {
  {
    const std::lock_guard lock(link_->mutex);
    link_->filter = nullptr;
  }
  if (connection_ == nullptr) return;
  g_dbus_connection_close_sync(connection_, nullptr, nullptr);
  if (filter_ != 0) g_dbus_connection_remove_filter(connection_, filter_);
  g_object_unref(connection_);
}

}  // namespace quillmere::support
