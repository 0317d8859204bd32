#include "Connection.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <cerrno>

#include "ClientConfiguration.h"

namespace quillmere::pipewire {
namespace {

constexpr Duration retryInterval = std::chrono::milliseconds(250);
/// A socket behind which nobody answers is tried again after twice as long each time, up to four seconds.
constexpr int mostDoublings = 4;
/// After an error a daemon that is still there answers within this time.
constexpr Duration longestDoubt = std::chrono::milliseconds(500);
/// When a session manager goes, the daemon has much to do and nothing of ours is heard anyway.
constexpr Duration longestDoubtWithoutKeeper = std::chrono::seconds(1);

}  // namespace

Connection::Connection(Loop& loop, std::string remote, Logger log, Events events)
    : loop_(loop),
      remote_(std::move(remote)),
      log_(std::move(log)),
      events_(std::move(events)),
      looks_{this},
      nodes_{this},
      outer_{Client{this}, Client{this}},
      retry_(loop, [this] { connect(); }),
      broken_(loop, [this] { startAnew(); }),
      doubt_(loop, [this] { startAnew(); }) {}

Connection::~Connection() {
  audioThread_.reset();
  if (context_ != nullptr) pw_context_destroy(context_);
}

void Connection::open() { connect(); }

void Connection::close() {
  retry_.disarm();
  doubt_.disarm();
  drop();
}

int Connection::sync() { return looks_.core != nullptr ? pw_core_sync(looks_.core, PW_ID_CORE, 0) : -1; }

int Connection::syncNodes() { return nodes_.core != nullptr ? pw_core_sync(nodes_.core, PW_ID_CORE, 0) : -1; }

void Connection::connect() {
  if (looks_.core != nullptr) return;
  if (context_ == nullptr) {
    context_ = pw_context_new(
        loop_.raw(), pw_properties_new(PW_KEY_CONFIG_NAME, realTimeConfiguration(pw_get_library_version()), nullptr),
        0);
    if (context_ == nullptr) {
      log_.error("the PipeWire context could not be made");
      return;
    }
    audioThread_.emplace(loop_, context_);
  }
  // In this order, each on a socket with a higher number.
  if (!connect(outer_.front()) || !connect(looks_) || !connect(nodes_) || !connect(outer_.back())) {
    for (auto* client : {&outer_.back(), &nodes_, &looks_, &outer_.front()}) disconnect(*client);
    if (!isWaiting_) log_.standard("no audio daemon answers; waiting for one");
    isWaiting_ = true;
    retry_.arm(retryInterval);
    return;
  }
  isWaiting_ = false;
  // By its answer the client's id is known.
  syncNodes();
  events_.connected(looks_.core);
}

bool Connection::connect(Client& client) {
  // Session managers let a program in a sandbox touch others' streams only if it says to be one of these.
  auto* properties = pw_properties_new(PW_KEY_APP_NAME, "Quillmere", PW_KEY_APP_ID, "app.quillmere.Quillmere",
                                       PW_KEY_MEDIA_CATEGORY, "Manager", nullptr);
  if (!remote_.empty()) pw_properties_set(properties, PW_KEY_REMOTE_NAME, remote_.c_str());
  client.core = pw_context_connect(context_, properties, 0);
  if (client.core == nullptr) return false;

  static const auto coreEvents = [] {
    pw_core_events events{};
    events.version = PW_VERSION_CORE_EVENTS;
    events.done = [](void* data, std::uint32_t id, int sequence) {
      const auto& told = *static_cast<const Client*>(data);
      if (id == PW_ID_CORE) told.owner->onDone(told, sequence);
    };
    events.error = [](void* data, std::uint32_t id, int, int result, const char* message) {
      const auto& told = *static_cast<const Client*>(data);
      told.owner->onError(told, id, result, message);
    };
    return events;
  }();
  pw_core_add_listener(client.core, &client.listener, &coreEvents, &client);
  return true;
}

void Connection::onDone(const Client& client, int sequence) {
  fruitless_ = 0;
  if (doubted_ == &client) doubt_.disarm();
  if (&client == &looks_) {
    events_.done(sequence);
    return;
  }
  if (&client != &nodes_) return;
  auto* self = reinterpret_cast<pw_proxy*>(pw_core_get_client(client.core));
  if (self != nullptr) events_.ownClientKnown(pw_proxy_get_bound_id(self));
  events_.nodesDone(sequence);
}

void Connection::onError(const Client& client, std::uint32_t id, int result, const char* message) {
  // Something went while we asked for it. It happens all the time and means nothing.
  if (result == -ENOENT) return;
  if (fruitless_ == 0 && result != -EPIPE) {
    log_.standard(logText("the audio daemon reports %d for %u: %s", result, id, message));
  }
  if (id != PW_ID_CORE) return;
  if (result == -EPIPE) {
    // Nothing may be destroyed in here.
    broken_.raise();
  } else {
    // An error of the core may be the end: the library closes the connection at whatever it cannot read or send, and
    // says no more than this. Or the daemon has refused something and goes on. Only an answer tells.
    doubt(client, longestDoubt);
  }
}

void Connection::metadataKeeperGone() {
  if (looks_.core != nullptr) doubt(looks_, longestDoubtWithoutKeeper);
}

void Connection::doubt(const Client& client, Duration longest) {
  pw_core_sync(client.core, PW_ID_CORE, 0);
  doubted_ = &client;
  doubt_.arm(longest);
}

void Connection::startAnew() {
  if (looks_.core == nullptr) return;
  if (fruitless_ == 0) log_.standard("the audio daemon is gone");
  drop();
  retry_.arm(retryInterval * (1 << std::min(fruitless_, mostDoublings)));
  ++fruitless_;
}

void Connection::drop() {
  doubt_.disarm();
  if (looks_.core == nullptr) return;
  events_.lost();
  for (auto* client : {&outer_.back(), &nodes_, &looks_, &outer_.front()}) disconnect(*client);
}

void Connection::disconnect(Client& client) {
  if (client.core == nullptr) return;
  spa_hook_remove(&client.listener);
  pw_core_disconnect(client.core);
  client.core = nullptr;
}

}  // namespace quillmere::pipewire
