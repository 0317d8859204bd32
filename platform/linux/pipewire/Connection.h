// The connection to the daemon: made, noticed to be lost, and made again for as long as the object lives.
#pragma once

#include <spa/utils/hook.h>

#include <cstdint>
#include <functional>
#include <string>

#include "Loop.h"
#include "runtime/Logger.h"

struct pw_context;
struct pw_core;

namespace quillmere::pipewire {

/// [loop] throughout; the destructor also where the loop has ended. Events come on [loop].
class Connection {
 public:
  struct Events {
    /// The core stands; nothing is known yet.
    std::function<void(pw_core*)> connected;
    /// Our client's global id.
    std::function<void(std::uint32_t)> ownClientKnown;
    /// The daemon is gone: let go of everything that belongs to the core. It is still there, but dead.
    std::function<void()> lost;
    /// All that was asked before sync() with this number has been answered.
    std::function<void(int)> done;
  };

  Connection(Loop& loop, std::string remote, Logger log, Events events);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void open();
  /// Tells `lost` if there was a connection, and doesn't come back.
  void close();
  [[nodiscard]] pw_core* core() const { return core_; }
  /// The number that `done` will be told.
  int sync();

 private:
  void connect();
  void onError(std::uint32_t id, int result, const char* message);
  void startAnew();
  void drop();

  Loop& loop_;
  std::string remote_;
  Logger log_;
  Events events_;
  pw_context* context_ = nullptr;
  pw_core* core_ = nullptr;
  spa_hook listener_{};
  bool isWaiting_ = false;
  /// Connections in a row that ended without an answer.
  int fruitless_ = 0;
  LoopTimer retry_;
  LoopSignal broken_;
  /// Runs while it is not known whether the connection has survived an error.
  LoopTimer doubt_;
};

}  // namespace quillmere::pipewire
