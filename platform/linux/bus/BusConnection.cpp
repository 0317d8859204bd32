// One private connection on the host's loop.
#include "bus/BusConnection.h"

#include <memory>
#include <utility>

#include "bus/SessionBusAddress.h"

namespace quillmere::bus {
namespace {

constexpr Duration answerTimeout = std::chrono::seconds(20);

/// Dropping the last reference alone would leave the connection, and its names with it, to whenever it is noticed.
void close(GDBusConnection* connection) { g_dbus_connection_close(connection, nullptr, nullptr, nullptr); }

}  // namespace

/// A call of GLib's that comes back in any case, once.
struct BusConnection::Call {
  std::shared_ptr<Presence> presence;
  HostLoop& loop;
  Answer answer{};
};

BusConnection::BusConnection(std::optional<std::string> address, Events events)
    : address_(std::move(address)),
      events_(std::move(events)),
      presence_(std::make_shared<Presence>(Presence{this})),
      cancellable_(g_cancellable_new()),
      loop_(HostLoop::ofProcess()) {}

BusConnection::~BusConnection() { end(); }

void BusConnection::invoke(std::function<void()> work) {
  loop_->post([presence = presence_, work = std::move(work)] {
    if (presence->self != nullptr) work();
  });
}

void BusConnection::after(Duration delay, std::function<void()> work) {
  const auto place = timers_.insert(timers_.end(), nullptr);
  *place = std::make_unique<HostTimer>(*loop_, [this, place, work = std::move(work)] {
    // What runs is kept by the loop until it has returned.
    timers_.erase(place);
    work();
  });
  (*place)->set(delay);
}

void BusConnection::end(const std::function<void()>& last) {
  loop_->perform([&] {
    if (presence_->self == nullptr) return;
    if (last) last();
    presence_->self = nullptr;
    g_cancellable_cancel(cancellable_.get());
    timers_.clear();
    // Cancelled calls still come back once; what they would have called goes now.
    for (auto* call : std::exchange(calls_, {})) call->answer = nullptr;
    disconnect();
  });
}

void BusConnection::connect() {
  if (connection_ || isConnecting_) return;
  const auto address = address_.value_or(sessionBusAddress());
  if (address.empty()) {
    events_.disconnected("there is no session bus");
    return;
  }
  isConnecting_ = true;
  const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                       G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  loop_->expectReturn();
  // A bus may take its time to greet: GLib waits on a thread of its own.
  g_dbus_connection_new_for_address(
      address.c_str(), flags, nullptr, cancellable_.get(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> returning(static_cast<Call*>(data));
        returning->loop.noteReturn();
        GError* error = nullptr;
        Object<GDBusConnection> made(g_dbus_connection_new_for_address_finish(result, &error));
        const std::string reason = error == nullptr ? "" : error->message;
        g_clear_error(&error);
        if (returning->presence->self != nullptr) {
          returning->presence->self->finish(std::move(made), reason);
        } else if (made) {
          close(made.get());
        }
      },
      new Call{presence_, *loop_});
}

void BusConnection::finish(Object<GDBusConnection> made, const std::string& reason) {
  isConnecting_ = false;
  if (made) {
    adopt(std::move(made));
  } else {
    events_.disconnected(reason);
  }
}

void BusConnection::adopt(Object<GDBusConnection> connection) {
  // Its end may have been told before anybody listened.
  if (g_dbus_connection_is_closed(connection.get()) != FALSE) {
    events_.disconnected("the session bus has closed the connection");
    return;
  }
  connection_ = std::move(connection);
  g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
  closedHandler_ =
      g_signal_connect(connection_.get(), "closed", G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer data) {
                         auto* self = static_cast<BusConnection*>(data);
                         self->disconnect();
                         self->events_.disconnected("the session bus has closed the connection");
                       }),
                       this);
  events_.connected();
}

void BusConnection::disconnect() {
  if (!connection_) return;
  g_signal_handler_disconnect(connection_.get(), closedHandler_);
  for (const auto subscription : std::exchange(subscriptions_, {})) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
  }
  // What has been called and has not begun would find nobody there.
  for (const auto object : std::exchange(objects_, {})) {
    g_dbus_connection_unregister_object(connection_.get(), object);
  }
  close(connection_.get());
  connection_.reset();
}

bool BusConnection::serve(const char* path, GDBusInterfaceInfo* interface, const GDBusInterfaceVTable& functions,
                          void* data) {
  if (!connection_) return false;
  const auto object =
      g_dbus_connection_register_object(connection_.get(), path, interface, &functions, data, nullptr, nullptr);
  if (object != 0) objects_.push_back(object);
  return object != 0;
}

void BusConnection::call(const std::string& service, const char* path, const char* interface, const char* method,
                         GVariant* arguments, Duration timeout, Reply reply) {
  ask(service, path, interface, method, arguments, timeout, G_DBUS_CALL_FLAGS_NO_AUTO_START,
      [reply = std::move(reply)](GVariant* value, const GError*) { reply(value); });
}

void BusConnection::ask(const std::string& service, const char* path, const char* interface, const char* method,
                        GVariant* arguments, Duration timeout, GDBusCallFlags flags, Answer answer) {
  if (!connection_) {
    if (arguments != nullptr) owned(arguments);
    return;
  }
  auto* begun = new Call{presence_, *loop_, std::move(answer)};
  calls_.push_back(begun);
  loop_->expectReturn();
  const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
  g_dbus_connection_call(
      connection_.get(), service.c_str(), path, interface, method, arguments, nullptr, flags, static_cast<int>(millis),
      cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> call(static_cast<Call*>(data));
        call->loop.noteReturn();
        GError* error = nullptr;
        const Variant value(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
        if (auto* self = call->presence->self; self != nullptr) {
          self->calls_.remove(call.get());
          if (G_DBUS_CONNECTION(source) == self->connection_.get()) call->answer(value.get(), error);
        }
        g_clear_error(&error);
      },
      begun);
}

guint BusConnection::subscribe(const char* interface, const char* signal, const char* path, const char* argument,
                               SignalHandler handler, GDBusSignalFlags flags) {
  struct Subscription {
    std::shared_ptr<Presence> presence;
    SignalHandler handler;
  };
  if (!connection_) return 0;
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), nullptr, interface, signal, path, argument, flags,
      [](GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* parameters,
         gpointer data) {
        const auto* subscription = static_cast<Subscription*>(data);
        if (subscription->presence->self != nullptr && sender != nullptr) subscription->handler(sender, parameters);
      },
      new Subscription{presence_, std::move(handler)}, [](gpointer data) { delete static_cast<Subscription*>(data); }));
  return subscriptions_.back();
}

void BusConnection::unsubscribe(guint subscription) {
  if (!connection_ || std::erase(subscriptions_, subscription) == 0) return;
  g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
}

void BusConnection::watchName(const std::string& name, const std::function<void(const std::string& owner)>& changed) {
  // A change that is told before the answer is newer than it.
  const auto isKnown = std::make_shared<bool>(false);
  subscribe(busInterface, "NameOwnerChanged", busPath, name.c_str(),
            [changed, isKnown](const std::string& sender, GVariant* parameters) {
              if (sender != busService || !isOfType(parameters, "(sss)")) return;
              const char* owner = nullptr;
              g_variant_get(parameters, "(&s&s&s)", nullptr, nullptr, &owner);
              *isKnown = true;
              changed(owner);
            });
  call(busService, busPath, busInterface, "GetNameOwner", g_variant_new("(s)", name.c_str()), answerTimeout,
       [changed, isKnown](GVariant* reply) {
         if (*isKnown) return;
         const char* owner = "";
         if (isOfType(reply, "(s)")) g_variant_get(reply, "(&s)", &owner);
         changed(owner);
       });
}

}  // namespace quillmere::bus
