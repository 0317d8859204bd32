// One private connection to the session bus, on the host's loop, so that nothing else ever waits for it.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../loop/HostLoop.h"
#include "../loop/HostTimer.h"
#include "Handles.h"
#include "runtime/Clocks.h"

namespace quillmere::bus {

inline constexpr const char* busService = "org.freedesktop.DBus";
inline constexpr const char* busInterface = busService;
inline constexpr const char* busPath = "/org/freedesktop/DBus";
inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// Members are [host] unless told otherwise; what is handed in is called there, never after end().
class BusConnection {
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

  /// `address` absent means the session's bus, empty means none. Nothing is connected yet. [any]
  BusConnection(std::optional<std::string> address, Events events);
  /// Ends it if end() has not. [any]
  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  /// Runs the work on the loop, later. [any]
  void invoke(std::function<void()> work);
  /// Runs `last` as the last thing, closes the connection and waits for that. To be called by whoever owns what the
  /// handlers touch, before it goes. [any]
  void end(const std::function<void()>& last = {});

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
  /// Offers an object until the connection goes; the functions get `data`. False where the place is taken.
  bool serve(const char* path, GDBusInterfaceInfo* interface, const GDBusInterfaceVTable& functions, void* data);

 private:
  /// Whether there is still somebody to tell, as those know it who come back from elsewhere.
  struct Presence {
    BusConnection* self;
  };
  struct Call;

  void finish(Object<GDBusConnection> made, const std::string& reason);
  void adopt(Object<GDBusConnection> connection);
  void disconnect();

  const std::optional<std::string> address_;
  const Events events_;
  const std::shared_ptr<Presence> presence_;
  Object<GCancellable> cancellable_;
  Object<GDBusConnection> connection_;
  gulong closedHandler_ = 0;
  std::vector<guint> subscriptions_;
  std::vector<guint> objects_;
  /// What is under way; each goes when it has come back.
  std::list<Call*> calls_;
  std::list<std::unique_ptr<HostTimer>> timers_;
  bool isConnecting_ = false;
  const std::shared_ptr<HostLoop> loop_;
};

}  // namespace quillmere::bus
