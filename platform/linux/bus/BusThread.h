// A thread of its own for one private connection to the session bus, so that nothing else ever waits for it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Handles.h"
#include "runtime/Clocks.h"

namespace quillmere::bus {

inline constexpr const char* busService = "org.freedesktop.DBus";
inline constexpr const char* busInterface = busService;
inline constexpr const char* busPath = "/org/freedesktop/DBus";
inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// The thread behind [bus], to which members belong unless told otherwise; what is handed in is called on it, never
/// after end().
class BusThread {
 public:
  using Reply = std::function<void(GVariant* reply)>;
  /// The error is null unless the reply is.
  using Answer = std::function<void(GVariant* reply, const GError* error)>;
  using SignalHandler = std::function<void(const std::string& sender, GVariant* parameters)>;

  struct Events {
    std::function<void()> connected;
    /// The connection that was there has gone, or none could be made. Nothing tries again by itself.
    std::function<void(const std::string& reason)> disconnected;
  };

  /// The name is the thread's, of fifteen characters at most. `address` absent means the session's bus, empty means
  /// none. Nothing is connected yet. [any]
  BusThread(const char* name, std::optional<std::string> address, Events events);
  /// Ends the thread if end() has not. [any but bus]
  ~BusThread();
  BusThread(const BusThread&) = delete;
  BusThread& operator=(const BusThread&) = delete;

  /// Runs the work on the thread, later. [any]
  void invoke(std::function<void()> work);
  /// Runs `last` as the last thing, closes the connection and waits for the thread. To be called by whoever owns what
  /// the handlers touch, before it goes. [any but bus]
  void end(std::function<void()> last = {});

  void connect();
  /// Null while there is none.
  [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

  /// Runs the work once, later.
  void after(Duration delay, std::function<void()> work);
  /// The reply is null if the call failed; it does not come at all once its connection has gone. No service is started
  /// for its sake.
  void call(const std::string& service, const char* path, const char* interface, const char* method,
            GVariant* arguments, Duration timeout, Reply reply);
  /// The same, where the reason of a failure counts, and where the service may be started.
  void ask(const std::string& service, const char* path, const char* interface, const char* method, GVariant* arguments,
           Duration timeout, GDBusCallFlags flags, Answer answer);
  /// Signals from any sender, until the connection goes or the number that is returned is unsubscribed, which is 0
  /// without a connection; `argument` is the first one where it is given.
  guint subscribe(const char* interface, const char* signal, const char* path, const char* argument,
                  SignalHandler handler, GDBusSignalFlags flags = G_DBUS_SIGNAL_FLAGS_NONE);
  void unsubscribe(guint subscription);
  /// Tells the owner of a name, now and whenever it changes; empty for none.
  void watchName(const std::string& name, const std::function<void(const std::string& owner)>& changed);

 private:
  void run(const char* name);
  void disconnect();
  void adopt(Object<GDBusConnection> connection);
  static void attach(GSource* source, std::function<void()> work, GMainContext* context);

  const std::optional<std::string> address_;
  const Events events_;
  GMainContext* context_;
  GMainLoop* loop_;
  Object<GCancellable> cancellable_;
  Object<GDBusConnection> connection_;
  gulong closedHandler_ = 0;
  std::vector<guint> subscriptions_;
  bool isConnecting_ = false;
  bool isEnding_ = false;
  int pending_ = 0;
  /// Last, so that it starts when all is there.
  std::thread thread_;
};

}  // namespace quillmere::bus
