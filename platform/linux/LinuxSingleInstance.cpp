// One instance a user, on the session bus or by a lock file.
#include "platform/linux/LinuxSingleInstance.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <thread>
#include <utility>

#include "bus/SessionBusAddress.h"

namespace quillmere {
namespace {

constexpr const char* busName = "app.quillmere.host";
constexpr const char* objectPath = "/app/quillmere/host";
constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr auto longestWait = std::chrono::milliseconds(2000);
constexpr int answerMillis = 1500;

constexpr const char* introspection = R"(<node>
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" direction="in"/></method>
    <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
    <method name="ActivateAction">
      <arg type="s" direction="in"/><arg type="av" direction="in"/><arg type="a{sv}" direction="in"/>
    </method>
  </interface>
</node>)";

enum class Outcome { first, second, unavailable };

class Descriptor {
 public:
  explicit Descriptor(int value = -1) : value_(value) {}
  Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Descriptor() {
    if (value_ >= 0) ::close(value_);
  }
  [[nodiscard]] int get() const { return value_; }
  explicit operator bool() const { return value_ >= 0; }

 private:
  int value_;
};

}  // namespace

struct LinuxSingleInstance::Callback {
  std::function<void()> function;
};

class LinuxSingleInstance::Place {
 public:
  virtual ~Place() = default;
};

class LinuxSingleInstance::BusPlace final : public Place {
 public:
  BusPlace(std::string address, std::function<void()> activate)
      : address_(std::move(address)),
        activate_(std::move(activate)),
        context_(g_main_context_new()),
        loop_(g_main_loop_new(context_, FALSE)),
        cancellable_(g_cancellable_new()) {
    auto outcome = outcome_.get_future();
    thread_ = std::thread([this] { run(); });
    // A bus that hangs says nothing of other instances.
    const bool isKnown = outcome.wait_for(longestWait) == std::future_status::ready;
    result = isKnown ? outcome.get() : Outcome::unavailable;
  }

  ~BusPlace() override {
    g_cancellable_cancel(cancellable_);
    GSource* source = g_idle_source_new();
    g_source_set_callback(
        source,
        [](gpointer loop) -> gboolean {
          g_main_loop_quit(static_cast<GMainLoop*>(loop));
          return G_SOURCE_REMOVE;
        },
        loop_, nullptr);
    g_source_attach(source, context_);
    g_source_unref(source);
    thread_.join();
    g_object_unref(cancellable_);
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
  }

  Outcome result = Outcome::unavailable;

 private:
  void run() {
    g_main_context_push_thread_default(context_);
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GDBusConnection* connection =
        g_dbus_connection_new_for_address_sync(address_.c_str(), flags, nullptr, cancellable_, nullptr);
    if (connection == nullptr) {
      outcome_.set_value(Outcome::unavailable);
    } else {
      g_dbus_connection_set_exit_on_close(connection, FALSE);
      const auto outcome = takePlace(connection);
      outcome_.set_value(outcome);
      // The loop ends when the place is given up; a bus that goes takes the name with it, the program stays.
      if (outcome == Outcome::first) g_main_loop_run(loop_);
      // Dropping the last reference alone would leave the connection, and with it the name, to whenever it is noticed.
      g_dbus_connection_close(connection, nullptr, nullptr, nullptr);
      g_object_unref(connection);
    }
    while (g_main_context_iteration(context_, FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(context_);
  }

  Outcome takePlace(GDBusConnection* connection) {
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
    static const GDBusInterfaceVTable table{methodCalled, nullptr, nullptr, {}};
    const guint object =
        g_dbus_connection_register_object(connection, objectPath, node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    if (object == 0) return Outcome::unavailable;
    // The holder may go between our two questions; the second round then finds the place free.
    for (int round = 0; round < 2; ++round) {
      const auto answer = requestName(connection);
      constexpr guint32 isOwner = 1;
      constexpr guint32 exists = 3;
      constexpr guint32 isAlreadyOwner = 4;
      if (answer == isOwner || answer == isAlreadyOwner) return Outcome::first;
      if (answer != exists) return Outcome::unavailable;
      if (activateOther(connection)) break;
    }
    return Outcome::second;
  }

  guint32 requestName(GDBusConnection* connection) {
    constexpr guint32 doNotQueue = 4;
    GVariant* reply =
        g_dbus_connection_call_sync(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "RequestName", g_variant_new("(su)", busName, doNotQueue), G_VARIANT_TYPE("(u)"),
                                    G_DBUS_CALL_FLAGS_NONE, answerMillis, cancellable_, nullptr);
    if (reply == nullptr) return 0;
    guint32 answer = 0;
    g_variant_get(reply, "(u)", &answer);
    g_variant_unref(reply);
    return answer;
  }

  /// False only if the holder of the name has gone.
  bool activateOther(GDBusConnection* connection) {
    GError* error = nullptr;
    GVariant* reply = g_dbus_connection_call_sync(connection, busName, objectPath, applicationInterface, "Activate",
                                                  g_variant_new("(a{sv})", nullptr), nullptr,
                                                  G_DBUS_CALL_FLAGS_NO_AUTO_START, answerMillis, cancellable_, &error);
    if (reply != nullptr) g_variant_unref(reply);
    const bool hasGone = g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE ||
                         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE;
    g_clear_error(&error);
    return !hasGone;
  }

  static void methodCalled(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                           GDBusMethodInvocation* invocation, gpointer data) {
    // Opening files and actions are other ways to come to the front.
    static_cast<BusPlace*>(data)->activate_();
    g_dbus_method_invocation_return_value(invocation, nullptr);
  }

  const std::string address_;
  const std::function<void()> activate_;
  GMainContext* context_;
  GMainLoop* loop_;
  GCancellable* cancellable_;
  std::promise<Outcome> outcome_;
  std::thread thread_;
};

class LinuxSingleInstance::FilePlace final : public Place {
 public:
  FilePlace(const std::string& folder, std::function<void()> activate) : activate_(std::move(activate)) {
    const auto lockPath = folder + "/" + busName + ".lock";
    const auto socketPath = folder + "/" + busName + ".activate";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= sizeof(address.sun_path)) return;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size());
    lock_ = Descriptor(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    socket_ = Descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!lock_ || !socket_) return;
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    if (::flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK) return;
      // The lock alone decides; a holder that does not listen is left in peace.
      static_cast<void>(::sendto(socket_.get(), "activate", 8, 0, generic, sizeof(address)));
      result = Outcome::second;
      return;
    }
    result = Outcome::first;
    // Whatever lies there is of an instance that has ended: the lock is ours.
    ::unlink(socketPath.c_str());
    wake_ = Descriptor(::eventfd(0, EFD_CLOEXEC));
    if (!wake_ || ::bind(socket_.get(), generic, sizeof(address)) != 0) return;
    thread_ = std::thread([this] { listen(); });
  }

  ~FilePlace() override {
    if (!thread_.joinable()) return;
    const std::uint64_t one = 1;
    static_cast<void>(::write(wake_.get(), &one, sizeof(one)));
    thread_.join();
  }

  Outcome result = Outcome::unavailable;

 private:
  void listen() {
    std::array<pollfd, 2> watched{pollfd{socket_.get(), POLLIN, 0}, pollfd{wake_.get(), POLLIN, 0}};
    while (true) {
      if (::poll(watched.data(), watched.size(), -1) < 0 && errno != EINTR) return;
      if (watched[1].revents != 0) return;
      if (watched[0].revents == 0) continue;
      std::array<char, 64> message{};
      while (::recv(socket_.get(), message.data(), message.size(), 0) >= 0) activate_();
    }
  }

  const std::function<void()> activate_;
  Descriptor lock_;
  Descriptor socket_;
  Descriptor wake_;
  std::thread thread_;
};

LinuxSingleInstance::LinuxSingleInstance(Executor& main, LogSink& log, LinuxSingleInstanceOptions options)
    : main_(main), log_(log, "SingleInstance"), options_(std::move(options)), callback_(std::make_shared<Callback>()) {}

LinuxSingleInstance::~LinuxSingleInstance() = default;

void LinuxSingleInstance::onActivationRequested(std::function<void()> callback) {
  callback_->function = std::move(callback);
}

bool LinuxSingleInstance::acquire() {
  if (place_) return true;
  const auto activate = [&main = main_, weak = std::weak_ptr<Callback>(callback_)] {
    main.post([weak] {
      const auto callback = weak.lock();
      if (callback && callback->function) callback->function();
    });
  };
  if (const auto address = options_.busAddress.value_or(sessionBusAddress()); !address.empty()) {
    auto place = std::make_unique<BusPlace>(address, activate);
    if (place->result == Outcome::second) return false;
    if (place->result == Outcome::first) {
      place_ = std::move(place);
      return true;
    }
    log_.standard("the session bus does not answer; a lock file keeps the place instead");
  }
  const char* variable = std::getenv("XDG_RUNTIME_DIR");
  const auto folder = options_.runtimeFolder.value_or(variable == nullptr ? "" : variable);
  if (folder.starts_with('/')) {
    auto place = std::make_unique<FilePlace>(folder, activate);
    if (place->result == Outcome::second) return false;
    if (place->result == Outcome::first) {
      place_ = std::move(place);
      return true;
    }
  }
  log_.error("no session bus and no runtime folder: other instances cannot be told apart");
  return true;
}

}  // namespace quillmere
