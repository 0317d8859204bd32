// One private connection on a thread of its own.
#include "bus/BusThread.h"

#include <pthread.h>

#include <memory>
#include <utility>

#include "bus/SessionBusAddress.h"

namespace quillmere::bus {
namespace {

constexpr Duration answerTimeout = std::chrono::seconds(20);

}  // namespace

BusThread::BusThread(const char* name, std::optional<std::string> address, Events events)
    : address_(std::move(address)),
      events_(std::move(events)),
      context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)),
      cancellable_(g_cancellable_new()) {
  thread_ = std::thread([this, name] { run(name); });
}

BusThread::~BusThread() {
  end();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void BusThread::attach(GSource* source, std::function<void()> work, GMainContext* context) {
  g_source_set_callback(
      source,
      [](gpointer data) -> gboolean {
        (*static_cast<std::function<void()>*>(data))();
        return G_SOURCE_REMOVE;
      },
      new std::function<void()>(std::move(work)),
      [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
  g_source_attach(source, context);
  g_source_unref(source);
}

void BusThread::invoke(std::function<void()> work) {
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  attach(
      source,
      [this, work = std::move(work)] {
        if (!isEnding_) work();
      },
      context_);
}

void BusThread::after(Duration delay, std::function<void()> work) {
  const auto millis = std::chrono::ceil<std::chrono::milliseconds>(delay).count();
  attach(
      g_timeout_source_new(static_cast<guint>(millis)),
      [this, work = std::move(work)] {
        if (!isEnding_) work();
      },
      context_);
}

void BusThread::end(std::function<void()> last) {
  if (!thread_.joinable()) return;
  invoke([this, last = std::move(last)] {
    if (last) last();
    isEnding_ = true;
    g_cancellable_cancel(cancellable_.get());
    disconnect();
    g_main_loop_quit(loop_);
  });
  thread_.join();
}

void BusThread::run(const char* name) {
  pthread_setname_np(pthread_self(), name);
  g_main_context_push_thread_default(context_);
  g_main_loop_run(loop_);
  // Cancelled calls still come back once; what they carry is freed by that.
  while (pending_ > 0) g_main_context_iteration(context_, TRUE);
  while (g_main_context_iteration(context_, FALSE) != FALSE) {
  }
  g_main_context_pop_thread_default(context_);
}

void BusThread::connect() {
  if (connection_ || isConnecting_ || isEnding_) return;
  const auto address = address_.value_or(sessionBusAddress());
  if (address.empty()) {
    events_.disconnected("there is no session bus");
    return;
  }
  isConnecting_ = true;
  ++pending_;
  const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                       G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  g_dbus_connection_new_for_address(
      address.c_str(), flags, nullptr, cancellable_.get(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        auto* self = static_cast<BusThread*>(data);
        --self->pending_;
        self->isConnecting_ = false;
        GError* error = nullptr;
        Object<GDBusConnection> made(g_dbus_connection_new_for_address_finish(result, &error));
        const std::string reason = error == nullptr ? "" : error->message;
        g_clear_error(&error);
        if (self->isEnding_) return;
        if (made) {
          self->adopt(std::move(made));
        } else {
          self->events_.disconnected(reason);
        }
      },
      this);
}

void BusThread::adopt(Object<GDBusConnection> connection) {
  connection_ = std::move(connection);
  g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
  closedHandler_ =
      g_signal_connect(connection_.get(), "closed", G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer data) {
                         auto* self = static_cast<BusThread*>(data);
                         if (self->isEnding_) return;
                         self->disconnect();
                         self->events_.disconnected("the session bus has closed the connection");
                       }),
                       this);
  events_.connected();
}

void BusThread::disconnect() {
  if (!connection_) return;
  g_signal_handler_disconnect(connection_.get(), closedHandler_);
  for (const auto subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
  }
  subscriptions_.clear();
  // Dropping the last reference alone would leave the connection, and its names with it, to whenever it is noticed.
  g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
  connection_.reset();
}

void BusThread::call(const std::string& service, const char* path, const char* interface, const char* method,
                     GVariant* arguments, Duration timeout, Reply reply) {
  ask(service, path, interface, method, arguments, timeout, G_DBUS_CALL_FLAGS_NO_AUTO_START,
      [reply = std::move(reply)](GVariant* value, const GError*) { reply(value); });
}

void BusThread::ask(const std::string& service, const char* path, const char* interface, const char* method,
                    GVariant* arguments, Duration timeout, GDBusCallFlags flags, Answer answer) {
  struct Call {
    BusThread* self;
    Answer answer;
  };
  if (!connection_) {
    if (arguments != nullptr) owned(arguments);
    return;
  }
  ++pending_;
  const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
  g_dbus_connection_call(
      connection_.get(), service.c_str(), path, interface, method, arguments, nullptr, flags, static_cast<int>(millis),
      cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> made(static_cast<Call*>(data));
        --made->self->pending_;
        GError* error = nullptr;
        const Variant value(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
        const bool isCurrent = G_DBUS_CONNECTION(source) == made->self->connection_.get();
        if (!made->self->isEnding_ && isCurrent) made->answer(value.get(), error);
        g_clear_error(&error);
      },
      new Call{this, std::move(answer)});
}

guint BusThread::subscribe(const char* interface, const char* signal, const char* path, const char* argument,
                           SignalHandler handler, GDBusSignalFlags flags) {
  struct Subscription {
    BusThread* self;
    SignalHandler handler;
  };
  if (!connection_) return 0;
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), nullptr, interface, signal, path, argument, flags,
      [](GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* parameters,
         gpointer data) {
        const auto* subscription = static_cast<Subscription*>(data);
        if (!subscription->self->isEnding_ && sender != nullptr) subscription->handler(sender, parameters);
      },
      new Subscription{this, std::move(handler)}, [](gpointer data) { delete static_cast<Subscription*>(data); }));
  return subscriptions_.back();
}

void BusThread::unsubscribe(guint subscription) {
  if (!connection_ || std::erase(subscriptions_, subscription) == 0) return;
  g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
}

void BusThread::watchName(const std::string& name, const std::function<void(const std::string& owner)>& changed) {
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
