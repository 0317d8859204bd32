// The connection to the daemon: made, noticed to be lost, and made again for as long as the object lives.
#pragma once

#include <spa/utils/hook.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "AudioThread.h"
#include "Loop.h"
#include "runtime/Logger.h"

struct pw_context;
struct pw_core;

namespace quillmere::pipewire {

/// Clients of the daemon, made and lost together. While a client binds metadata or sets a parameter of somebody's
/// object, the daemon reads nothing more from it until that somebody has answered. So a client that does that may have
/// no nodes: the session manager sets parameters of them, and if it waits for us while we wait for it, neither is ever
/// read again, and nobody's streams are linked any more. One client looks and asks, another has the nodes.
/// Around these two there is one that was made before them and one that was made after: whatever the order in which the
/// daemon notices that we have died, one of them is the last (`Stragglers`).
/// [loop] throughout; the destructor also where the loop has ended. Events come on [loop].
class Connection {
 public:
  struct Events {
    /// All stand; nothing is known yet.
    std::function<void(pw_core*)> connected;
    /// The global id of the client that has the nodes.
    std::function<void(std::uint32_t)> ownClientKnown;
    /// The daemon is gone: let go of everything that belongs to any core. They are still there, but dead.
    std::function<void()> lost;
    /// All that was asked before sync() with this number has been answered.
    std::function<void(int)> done;
    /// The same for syncNodes().
    std::function<void(int)> nodesDone;
  };

  Connection(Loop& loop, std::string remote, Logger log, Events events);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void open();
  /// Tells `lost` if there was a connection, and doesn't come back.
  void close();
  /// What nodes, and links between them, are made with; null where there is no connection.
  [[nodiscard]] pw_core* nodeCore() const { return nodes_.core; }
  /// Of the client that was made before the others (0) or after them (1); null where there is no connection.
  [[nodiscard]] pw_core* outerCore(std::size_t place) const { return outer_.at(place).core; }
  /// The number that `done` will be told.
  int sync();
  /// The number that `nodesDone` will be told.
  int syncNodes();
  /// Whoever kept the metadata is gone. The daemon reads nothing from a client that is binding it until that somebody
  /// has answered; one that went meanwhile never will, and the client is never read again, though it is told of
  /// everything. So it is asked, and where nobody answers all is made anew.
  void metadataKeeperGone();

 private:
  struct Client {
    Connection* owner = nullptr;
    pw_core* core = nullptr;
    spa_hook listener{};
  };
  void connect();
  /// False where nobody answers.
  bool connect(Client& client);
  void onDone(const Client& client, int sequence);
  void onError(const Client& client, std::uint32_t id, int result, const char* message);
  /// Asks the daemon whether it still listens to a client; without an answer in that time it counts as gone.
  void doubt(const Client& client, Duration longest);
  void startAnew();
  void drop();
  static void disconnect(Client& client);

  Loop& loop_;
  std::string remote_;
  Logger log_;
  Events events_;
  pw_context* context_ = nullptr;
  std::optional<AudioThread> audioThread_;
  Client looks_;
  Client nodes_;
  std::array<Client, 2> outer_;
  bool isWaiting_ = false;
  /// Connections in a row that ended without an answer.
  int fruitless_ = 0;
  LoopTimer retry_;
  LoopSignal broken_;
  /// Runs while it is not known whether a client is still read, and of which one that is.
  LoopTimer doubt_;
  const Client* doubted_ = nullptr;
};

}  // namespace quillmere::pipewire
