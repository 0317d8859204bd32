// The session bus side of now playing and media keys.
#include "mpris/PlayerWatcher.h"

#include <gio/gio.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "bus/SessionBusAddress.h"

namespace quillmere::mpris {
namespace {

constexpr const char* busService = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* rootInterface = "org.mpris.MediaPlayer2";
constexpr const char* playerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* playerPath = "/org/mpris/MediaPlayer2";
constexpr const char* playerPrefix = "org.mpris.MediaPlayer2.";
/// Stands for other players, which are there under their own names.
constexpr const char* playerMirror = "org.mpris.MediaPlayer2.playerctld";
constexpr std::size_t maxPlayers = 64;
/// A position younger than this is not asked for again.
constexpr Duration positionPeriod = std::chrono::milliseconds(400);

struct FreeVariant {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, FreeVariant>;

struct FreeObject {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, FreeObject>;

bool isOfType(GVariant* value, const char* type) {
  return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE(type)) != FALSE;
}

}  // namespace

/// Everything but the few members named [any] belongs to the thread.
class PlayerWatcher::Thread {
 public:
  Thread(Clocks& clocks, LogSink& log, PlayerWatcherOptions options)
      : clocks_(clocks),
        log_(log, "PlayerWatcher"),
        options_(std::move(options)),
        context_(g_main_context_new()),
        loop_(g_main_loop_new(context_, FALSE)),
        cancellable_(g_cancellable_new()) {
    thread_ = std::thread([this] { run(); });
    invoke([this] { connect(); });
  }

  ~Thread() {
    invoke([this] { shutDown(); });
    thread_.join();
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
  }

  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// [any]
  std::optional<Player> current() {
    const auto now = clocks_.monotonicNow();
    std::optional<Player> player;
    bool isConnected = false;
    {
      const std::lock_guard lock(mutex_);
      player = current_;
      isConnected = isConnected_;
    }
    if (!isConnected || wantsAttention_ ||
        (player && player->isPlaying() && now - player->positionAt > positionPeriod)) {
      if (!attentionIsPosted_.exchange(true)) invoke([this] { attend(); });
    }
    return player;
  }

  /// [any]
  void press(std::int32_t key, std::optional<ToldState> told) {
    invoke([this, key, told = std::move(told)] {
      const auto call = decideKey(key, told, players_, pausedByKey_);
      if (!call || !connection_) return;
      this->call(call->busName.c_str(), playerPath, playerInterface, call->method, nullptr, [](GVariant*) {});
    });
  }

 private:
  using Reply = std::function<void(GVariant* reply)>;

  void invoke(std::function<void()> work) {
    auto* heap = new std::function<void()>(std::move(work));
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
          (*static_cast<std::function<void()>*>(data))();
          return G_SOURCE_REMOVE;
        },
        heap, [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
    g_source_attach(source, context_);
    g_source_unref(source);
  }

  void run() {
    g_main_context_push_thread_default(context_);
    g_main_loop_run(loop_);
    // Cancelled calls still come back once; what they carry is freed by that.
    while (pending_ > 0) g_main_context_iteration(context_, TRUE);
    connection_.reset();
    while (g_main_context_iteration(context_, FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(context_);
  }

  void shutDown() {
    isEnding_ = true;
    g_cancellable_cancel(cancellable_.get());
    disconnect();
    g_main_loop_quit(loop_);
  }

  // --- connection

  void connect() {
    if (connection_ || isConnecting_ || isEnding_) return;
    const auto now = clocks_.monotonicNow();
    if (nextAttempt_ && now < *nextAttempt_) return;
    nextAttempt_ = now + options_.retryPeriod;
    const auto address = options_.address.value_or(sessionBusAddress());
    if (address.empty()) {
      reportMissing("no session bus");
      return;
    }
    isConnecting_ = true;
    ++pending_;
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(
        address.c_str(), flags, nullptr, cancellable_.get(),
        [](GObject*, GAsyncResult* result, gpointer data) {
          auto* self = static_cast<Thread*>(data);
          --self->pending_;
          self->isConnecting_ = false;
          GError* error = nullptr;
          Object<GDBusConnection> connection(g_dbus_connection_new_for_address_finish(result, &error));
          if (connection && !self->isEnding_) self->begin(std::move(connection));
          if (error != nullptr) {
            if (!self->isEnding_) self->reportMissing(error->message);
            g_error_free(error);
          }
        },
        this);
  }

  void reportMissing(const char* reason) {
    if (missingIsReported_) return;
    missingIsReported_ = true;
    log_.standard(std::string("media players are out of reach: ") + reason);
  }

  void begin(Object<GDBusConnection> connection) {
    connection_ = std::move(connection);
    missingIsReported_ = false;
    nextAttempt_.reset();
    g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
    closedHandler_ = g_signal_connect(connection_.get(), "closed",
                                      G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, gpointer data) {
                                        auto* self = static_cast<Thread*>(data);
                                        if (self->isEnding_) return;
                                        self->disconnect();
                                        self->reportMissing("the session bus has closed the connection");
                                      }),
                                      this);
    subscribe(busService, busService, "NameOwnerChanged", busPath, rootInterface,
              G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE, [](Thread& self, const char*, GVariant* parameters) {
                if (!isOfType(parameters, "(sss)")) return;
                const char* name = nullptr;
                const char* oldOwner = nullptr;
                const char* newOwner = nullptr;
                g_variant_get(parameters, "(&s&s&s)", &name, &oldOwner, &newOwner);
                self.setOwner(name, newOwner);
              });
    subscribe(
        nullptr, propertiesInterface, "PropertiesChanged", playerPath, playerInterface, G_DBUS_SIGNAL_FLAGS_NONE,
        [](Thread& self, const char* sender, GVariant* parameters) { self.propertiesChanged(sender, parameters); });
    subscribe(nullptr, playerInterface, "Seeked", playerPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
              [](Thread& self, const char* sender, GVariant* parameters) { self.seeked(sender, parameters); });
    call(busService, busPath, busService, "ListNames", nullptr, [this](GVariant* reply) { namesListed(reply); });
    publish();
  }

  void disconnect() {
    if (connection_) {
      g_signal_handler_disconnect(connection_.get(), closedHandler_);
      for (const auto subscription : subscriptions_) {
        g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
      }
      g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
    }
    subscriptions_.clear();
    connection_.reset();
    players_.clear();
    questions_.clear();
    publish();
  }

  using SignalHandler = void (*)(Thread& self, const char* sender, GVariant* parameters);
  struct Subscription {
    Thread* self;
    SignalHandler handler;
  };

  void subscribe(const char* sender, const char* interface, const char* signal, const char* path, const char* argument,
                 GDBusSignalFlags flags, SignalHandler handler) {
    subscriptions_.push_back(g_dbus_connection_signal_subscribe(
        connection_.get(), sender, interface, signal, path, argument, flags,
        [](GDBusConnection*, const char* from, const char*, const char*, const char*, GVariant* parameters,
           gpointer data) {
          const auto* subscription = static_cast<Subscription*>(data);
          if (!subscription->self->isEnding_) subscription->handler(*subscription->self, from, parameters);
        },
        new Subscription{this, handler}, [](gpointer data) { delete static_cast<Subscription*>(data); }));
  }

  /// The reply is null if the call failed. It comes on the thread, and never after the end.
  void call(const char* service, const char* path, const char* interface, const char* method, GVariant* arguments,
            Reply reply) {
    struct Call {
      Thread* self;
      Reply reply;
    };
    ++pending_;
    const auto timeout = std::chrono::duration_cast<std::chrono::milliseconds>(options_.answerTimeout).count();
    g_dbus_connection_call(
        connection_.get(), service, path, interface, method, arguments, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<int>(timeout), cancellable_.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<Call> made(static_cast<Call*>(data));
          --made->self->pending_;
          const Variant value(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
          const bool isCurrent = G_DBUS_CONNECTION(source) == made->self->connection_.get();
          if (!made->self->isEnding_ && isCurrent) made->reply(value.get());
        },
        new Call{this, std::move(reply)});
  }

  // --- players

  struct Questions {
    bool propertiesAreAsked = false;
    bool positionIsAsked = false;
    bool positionIsWanted = false;
    bool isAnswered = false;
    MonotonicTime nextTry{};
  };

  void namesListed(GVariant* reply) {
    if (!isOfType(reply, "(as)")) return;
    const Variant names(g_variant_get_child_value(reply, 0));
    GVariantIter iterator;
    g_variant_iter_init(&iterator, names.get());
    const char* name = nullptr;
    while (g_variant_iter_next(&iterator, "&s", &name) != FALSE) {
      if (!g_str_has_prefix(name, playerPrefix)) continue;
      call(busService, busPath, busService, "GetNameOwner", g_variant_new("(s)", name),
           [this, busName = std::string(name)](GVariant* answer) {
             if (!isOfType(answer, "(s)") || players_.contains(busName)) return;
             const char* owner = nullptr;
             g_variant_get(answer, "(&s)", &owner);
             setOwner(busName, owner);
           });
    }
  }

  void setOwner(const std::string& busName, const std::string& owner) {
    if (!busName.starts_with(playerPrefix) || busName == playerMirror) return;
    players_.erase(busName);
    questions_.erase(busName);
    if (!owner.empty()) {
      if (players_.size() >= maxPlayers) {
        log_.error("media player " + busName + " ignored: there are too many");
        return;
      }
      Player player;
      player.busName = busName;
      player.owner = owner;
      player.discovered = ++discovered_;
      players_.emplace(busName, std::move(player));
      askProcess(busName, owner);
      askProperties(busName);
    }
    publish();
  }

  /// The player under this name, if it is still the one that was asked.
  Player* find(const std::string& busName, const std::string& owner) {
    const auto found = players_.find(busName);
    return found == players_.end() || found->second.owner != owner ? nullptr : &found->second;
  }

  void askProcess(const std::string& busName, const std::string& owner) {
    call(busService, busPath, busService, "GetConnectionUnixProcessID", g_variant_new("(s)", owner.c_str()),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr || !isOfType(reply, "(u)")) return;
           guint32 pid = 0;
           g_variant_get(reply, "(u)", &pid);
           player->pid = pid <= G_MAXINT32 ? static_cast<std::int32_t>(pid) : 0;
           publish();
         });
    call(owner.c_str(), playerPath, propertiesInterface, "Get", g_variant_new("(ss)", rootInterface, "DesktopEntry"),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr || !isOfType(reply, "(v)")) return;
           const Variant boxed(g_variant_get_child_value(reply, 0));
           const Variant value(g_variant_get_variant(boxed.get()));
           if (!isOfType(value.get(), "s")) return;
           player->desktopEntry = g_variant_get_string(value.get(), nullptr);
           publish();
         });
  }

  void askProperties(const std::string& busName) {
    const auto found = players_.find(busName);
    auto& questions = questions_[busName];
    if (found == players_.end() || questions.propertiesAreAsked) return;
    questions.propertiesAreAsked = true;
    const auto owner = found->second.owner;
    call(owner.c_str(), playerPath, propertiesInterface, "GetAll", g_variant_new("(s)", playerInterface),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr) return;
           auto& asked = questions_[busName];
           asked.propertiesAreAsked = false;
           asked.isAnswered = isOfType(reply, "(a{sv})");
           if (asked.isAnswered) {
             const Variant properties(g_variant_get_child_value(reply, 0));
             apply(*player, properties.get());
           } else {
             asked.nextTry = clocks_.monotonicNow() + options_.retryPeriod;
           }
           publish();
         });
  }

  void askPosition(const Player& asked) {
    auto& questions = questions_[asked.busName];
    if (questions.positionIsAsked) {
      questions.positionIsWanted = true;
      return;
    }
    questions.positionIsAsked = true;
    questions.positionIsWanted = false;
    const auto busName = asked.busName;
    const auto owner = asked.owner;
    call(owner.c_str(), playerPath, propertiesInterface, "Get", g_variant_new("(ss)", playerInterface, "Position"),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr) return;
           auto& after = questions_[busName];
           after.positionIsAsked = false;
           if (after.positionIsWanted) {
             askPosition(*player);
             return;
           }
           if (isOfType(reply, "(v)")) {
             const Variant boxed(g_variant_get_child_value(reply, 0));
             const Variant value(g_variant_get_variant(boxed.get()));
             if (isOfType(value.get(), "x")) {
               applyPosition(*player, g_variant_get_int64(value.get()), clocks_.monotonicNow());
             }
           }
           publish();
         });
  }

  void apply(Player& player, GVariant* properties) {
    const Variant position(g_variant_lookup_value(properties, "Position", G_VARIANT_TYPE_INT64));
    if (applyProperties(player, properties, clocks_.monotonicNow(), playSequence_) && !position) askPosition(player);
  }

  void propertiesChanged(const char* sender, GVariant* parameters) {
    if (sender == nullptr || !isOfType(parameters, "(sa{sv}as)")) return;
    const Variant changed(g_variant_get_child_value(parameters, 1));
    const Variant invalidated(g_variant_get_child_value(parameters, 2));
    for (auto& [busName, player] : players_) {
      if (player.owner != sender) continue;
      apply(player, changed.get());
      if (g_variant_n_children(invalidated.get()) > 0) askProperties(busName);
    }
    publish();
  }

  void seeked(const char* sender, GVariant* parameters) {
    if (sender == nullptr || !isOfType(parameters, "(x)")) return;
    gint64 micros = 0;
    g_variant_get(parameters, "(x)", &micros);
    for (auto& [busName, player] : players_) {
      if (player.owner == sender) applyPosition(player, micros, clocks_.monotonicNow());
    }
    publish();
  }

  /// Somebody asks: what has to be looked after is looked after now.
  void attend() {
    attentionIsPosted_ = false;
    if (isEnding_) return;
    if (!connection_) {
      connect();
      return;
    }
    const auto now = clocks_.monotonicNow();
    for (auto& [busName, questions] : questions_) {
      if (!questions.isAnswered && !questions.propertiesAreAsked && now >= questions.nextTry) askProperties(busName);
    }
    const auto* counting = countingPlayer(players_);
    if (counting != nullptr && counting->isPlaying() && now - counting->positionAt > positionPeriod &&
        !questions_[counting->busName].positionIsAsked) {
      askPosition(*counting);
    }
  }

  void publish() {
    const auto* counting = countingPlayer(players_);
    bool hasUnanswered = false;
    for (const auto& [busName, questions] : questions_) hasUnanswered = hasUnanswered || !questions.isAnswered;
    wantsAttention_ = hasUnanswered;
    const std::lock_guard lock(mutex_);
    isConnected_ = connection_ != nullptr;
    current_ = counting == nullptr ? std::nullopt : std::optional<Player>(*counting);
  }

  Clocks& clocks_;
  Logger log_;
  const PlayerWatcherOptions options_;
  GMainContext* context_;
  GMainLoop* loop_;
  Object<GCancellable> cancellable_;
  Object<GDBusConnection> connection_;
  gulong closedHandler_ = 0;
  std::vector<guint> subscriptions_;
  bool isConnecting_ = false;
  bool isEnding_ = false;
  bool missingIsReported_ = false;
  std::optional<MonotonicTime> nextAttempt_;
  int pending_ = 0;
  Players players_;
  std::map<std::string, Questions> questions_;
  std::uint64_t playSequence_ = 0;
  std::uint64_t discovered_ = 0;
  std::string pausedByKey_;

  std::atomic<bool> attentionIsPosted_ = false;
  std::atomic<bool> wantsAttention_ = false;
  std::mutex mutex_;
  bool isConnected_ = false;
  std::optional<Player> current_;

  /// Last, so that it starts when all is there.
  std::thread thread_;
};

PlayerWatcher::PlayerWatcher(Clocks& clocks, LogSink& log, PlayerWatcherOptions options)
    : thread_(std::make_unique<Thread>(clocks, log, std::move(options))) {}

PlayerWatcher::~PlayerWatcher() = default;

std::optional<Player> PlayerWatcher::current() { return thread_->current(); }

void PlayerWatcher::setTold(std::optional<ToldState> told) {
  const std::lock_guard lock(toldMutex_);
  told_ = std::move(told);
}

void PlayerWatcher::press(std::int32_t key) {
  std::optional<ToldState> told;
  {
    const std::lock_guard lock(toldMutex_);
    told = told_;
  }
  thread_->press(key, std::move(told));
}

}  // namespace quillmere::mpris
