// What of us goes last when we are killed, so that the session manager looks at the graph once more.
// All calls with the loop locked, or on the loop. [loop]
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "GraphModel.h"
#include "Loop.h"
#include "runtime/Logger.h"

struct pw_core;

namespace quillmere::pipewire {

/// WirePlumber 0.4 links nobody while a node is new to it. What it put off meanwhile it does when that node is ready;
/// but when that node goes before it is ready, with whoever had it, nothing reminds it: the streams that have lost
/// their tap stay silent until anything else happens. A straggler is a node that was ready long ago, of a client that
/// has nothing else. Clients of one process that is killed go in the order of their sockets, forwards or backwards; so
/// there is one of a client that is older than the one with all other nodes, and one of a client that is younger, and
/// one of them goes after them. Neither ever runs, is linked, or is shown by a mixer.
class Stragglers {
 public:
  static constexpr std::size_t count = 2;
  /// `core` gives the connection of the moment of each, null where there is none.
  /// `changed` is told when areReady() may answer otherwise and nothing in the model has changed.
  Stragglers(Loop& loop, const GraphModel& model, std::function<pw_core*(std::size_t)> core, Logger log,
             std::function<void()> changed);
  ~Stragglers();
  Stragglers(const Stragglers&) = delete;
  Stragglers& operator=(const Stragglers&) = delete;

  /// They stand for as long as an application may have been moved to a node of ours, and are made before any such node.
  void stand(bool isWanted);
  /// The session manager is done with them, as far as can be seen from here; or takes longer for it than is worth
  /// waiting for. Before, nothing is to be moved.
  [[nodiscard]] bool areReady() const;

 private:
  struct Straggler;
  [[nodiscard]] std::unique_ptr<Straggler> make(pw_core* core);

  const GraphModel& model_;
  std::function<pw_core*(std::size_t)> core_;
  Logger log_;
  std::function<void()> changed_;
  LoopTimer patience_;
  bool isPatienceOver_ = false;
  std::uint64_t made_ = 0;
  std::array<std::unique_ptr<Straggler>, count> stragglers_;
};

}  // namespace quillmere::pipewire
