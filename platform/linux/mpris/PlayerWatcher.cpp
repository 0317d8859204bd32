// The session bus side of now playing and media keys.
#include "mpris/PlayerWatcher.h"

#include <gio/gio.h>

#include <atomic>
#include <functional>
#include <utility>
#include <vector>

#include "bus/BusConnection.h"
#include "mpris/KeyDecision.h"

namespace quillmere::mpris {
namespace {

constexpr const char* rootInterface = "org.mpris.MediaPlayer2";
constexpr const char* playerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* playerPath = "/org/mpris/MediaPlayer2";
constexpr const char* playerPrefix = "org.mpris.MediaPlayer2.";
/// Stands for other players, which are there under their own names.
constexpr const char* playerMirror = "org.mpris.MediaPlayer2.playerctld";
constexpr std::size_t maxPlayers = 64;
/// A position younger than this is not asked for again.
constexpr Duration positionPeriod = std::chrono::milliseconds(400);

using bus::busInterface;
using bus::busPath;
using bus::busService;
using bus::isOfType;
using bus::propertiesInterface;
using bus::Variant;

}  // namespace

/// Everything but the few members named [any] belongs to the loop.
class PlayerWatcher::Core {
 public:
  Core(Clocks& clocks, LogSink& log, PlayerWatcherOptions options)
      : clocks_(clocks),
        log_(log, "PlayerWatcher"),
        options_(std::move(options)),
        bus_(options_.address, {[this] { begin(); }, [this](const std::string& reason) { leave(reason); }}) {
    changes_.setStaleAt(MonotonicTime::min());
    bus_.invoke([this] { connect(); });
  }

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
      if (!attentionIsPosted_.exchange(true)) bus_.invoke([this] { attend(); });
    }
    return player;
  }

  /// [any]
  [[nodiscard]] const ChangeSignal& changes() const { return changes_; }

  /// [any]
  void press(std::int32_t key, mediakey::Purpose purpose, const std::string& shown) {
    bus_.invoke([this, key, purpose, shown] {
      const auto call = decideKey(key, purpose, shown, players_, pausedRun_);
      if (!call || bus_.connection() == nullptr) return;
      this->call(call->busName, playerPath, playerInterface, call->method, nullptr, [](GVariant*) {});
    });
  }

 private:
  // --- connection

  void connect() {
    const auto now = clocks_.monotonicNow();
    if (bus_.connection() != nullptr || (nextAttempt_ && now < *nextAttempt_)) return;
    nextAttempt_ = now + options_.retryPeriod;
    bus_.connect();
  }

  void begin() {
    missingIsReported_ = false;
    nextAttempt_.reset();
    bus_.subscribe(
        busInterface, "NameOwnerChanged", busPath, rootInterface,
        [this](const std::string& sender, GVariant* parameters) {
          if (sender != busService || !isOfType(parameters, "(sss)")) return;
          const char* name = nullptr;
          const char* newOwner = nullptr;
          g_variant_get(parameters, "(&s&s&s)", &name, nullptr, &newOwner);
          setOwner(name, newOwner);
        },
        G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE);
    bus_.subscribe(propertiesInterface, "PropertiesChanged", playerPath, playerInterface,
                   [this](const std::string& sender, GVariant* parameters) { propertiesChanged(sender, parameters); });
    bus_.subscribe(playerInterface, "Seeked", playerPath, nullptr,
                   [this](const std::string& sender, GVariant* parameters) { seeked(sender, parameters); });
    call(busService, busPath, busInterface, "ListNames", nullptr, [this](GVariant* reply) { namesListed(reply); });
    publish();
  }

  void leave(const std::string& reason) {
    if (!missingIsReported_) log_.standard("media players are out of reach: " + reason);
    missingIsReported_ = true;
    players_.clear();
    questions_.clear();
    publish();
  }

  void call(const std::string& service, const char* path, const char* interface, const char* method,
            GVariant* arguments, bus::BusConnection::Reply reply) {
    bus_.call(service, path, interface, method, arguments, options_.answerTimeout, std::move(reply));
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
      call(busService, busPath, busInterface, "GetNameOwner", g_variant_new("(s)", name),
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
    call(busService, busPath, busInterface, "GetConnectionUnixProcessID", g_variant_new("(s)", owner.c_str()),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr || !isOfType(reply, "(u)")) return;
           guint32 pid = 0;
           g_variant_get(reply, "(u)", &pid);
           player->pid = pid <= G_MAXINT32 ? static_cast<std::int32_t>(pid) : 0;
           publish();
         });
    call(owner, playerPath, propertiesInterface, "Get", g_variant_new("(ss)", rootInterface, "DesktopEntry"),
         [this, busName, owner](GVariant* reply) {
           auto* player = find(busName, owner);
           if (player == nullptr || !isOfType(reply, "(v)")) return;
           const Variant boxed(g_variant_get_child_value(reply, 0));
           const Variant value(g_variant_get_variant(boxed.get()));
           player->desktopEntry = desktopEntryOf(value.get());
           publish();
         });
  }

  void askProperties(const std::string& busName) {
    const auto found = players_.find(busName);
    auto& questions = questions_[busName];
    if (found == players_.end() || questions.propertiesAreAsked) return;
    questions.propertiesAreAsked = true;
    const auto owner = found->second.owner;
    call(owner, playerPath, propertiesInterface, "GetAll", g_variant_new("(s)", playerInterface),
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
    call(owner, playerPath, propertiesInterface, "Get", g_variant_new("(ss)", playerInterface, "Position"),
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

  void propertiesChanged(const std::string& sender, GVariant* parameters) {
    if (!isOfType(parameters, "(sa{sv}as)")) return;
    const Variant changed(g_variant_get_child_value(parameters, 1));
    const Variant invalidated(g_variant_get_child_value(parameters, 2));
    for (auto& [busName, player] : players_) {
      if (player.owner != sender) continue;
      apply(player, changed.get());
      if (g_variant_n_children(invalidated.get()) > 0) askProperties(busName);
    }
    publish();
  }

  void seeked(const std::string& sender, GVariant* parameters) {
    if (!isOfType(parameters, "(x)")) return;
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
    if (bus_.connection() == nullptr) {
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
    const bool isConnected = bus_.connection() != nullptr;
    const bool isToBeAsked = !isConnected || hasUnanswered || (counting != nullptr && counting->isPlaying());
    const std::lock_guard lock(mutex_);
    isConnected_ = isConnected;
    current_ = counting == nullptr ? std::nullopt : std::optional<Player>(*counting);
    changes_.setStaleAt(isToBeAsked ? std::optional(MonotonicTime::min()) : std::nullopt);
    // Under the lock: whoever has the new answer has been told.
    changes_.raise();
  }

  Clocks& clocks_;
  Logger log_;
  const PlayerWatcherOptions options_;
  bool missingIsReported_ = false;
  std::optional<MonotonicTime> nextAttempt_;
  Players players_;
  std::map<std::string, Questions> questions_;
  std::uint64_t playSequence_ = 0;
  std::uint64_t discovered_ = 0;
  /// The run of playing that a key has ended; 0 if there is none.
  std::uint64_t pausedRun_ = 0;

  std::atomic<bool> attentionIsPosted_ = false;
  std::atomic<bool> wantsAttention_ = false;
  std::mutex mutex_;
  bool isConnected_ = false;
  std::optional<Player> current_;
  ChangeSignal changes_;

  /// Last, so that it begins when all is there and ends before any of it goes.
  bus::BusConnection bus_;
};

PlayerWatcher::PlayerWatcher(Clocks& clocks, LogSink& log, PlayerWatcherOptions options)
    : core_(std::make_unique<Core>(clocks, log, std::move(options))) {}

PlayerWatcher::~PlayerWatcher() = default;

std::optional<Player> PlayerWatcher::current() { return core_->current(); }

const ChangeSignal& PlayerWatcher::changes() const { return core_->changes(); }

void PlayerWatcher::setShown(std::string busName) { shown_ = std::move(busName); }

void PlayerWatcher::press(std::int32_t key, mediakey::Purpose purpose) { core_->press(key, purpose, shown_); }

}  // namespace quillmere::mpris
