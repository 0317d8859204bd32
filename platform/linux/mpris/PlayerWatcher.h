// Watches the media players on the session bus, on the host's loop; no call waits for a player.
// Both the now-playing source and the media keys stand on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Player.h"
#include "platform/MediaKeys.h"
#include "runtime/ChangeSignal.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere::mpris {

struct PlayerWatcherOptions {
  /// D-Bus address; absent means the session's.
  std::optional<std::string> address;
  /// After this a player's silence counts as a failed question.
  Duration answerTimeout = std::chrono::seconds(20);
  /// How long to leave a missing bus alone, and a player that failed to answer.
  Duration retryPeriod = std::chrono::seconds(5);
};

class PlayerWatcher {
 public:
  /// [main]
  PlayerWatcher(Clocks& clocks, LogSink& log, PlayerWatcherOptions options = {});
  /// Calls that are under way are dropped. [any]
  ~PlayerWatcher();
  PlayerWatcher(const PlayerWatcher&) = delete;
  PlayerWatcher& operator=(const PlayerWatcher&) = delete;

  /// The player that counts, as last told; asks it for its position in the background. Without a bus, looks for one
  /// again now and then. [any]
  [[nodiscard]] std::optional<Player> current();

  /// Raised when current() may have another answer; stale while somebody has to ask for that: for the position of a
  /// player that plays, for a player that has not answered, and for the bus. [any]
  [[nodiscard]] const ChangeSignal& changes() const;

  /// The bus name of the player whose track the program has just been told; empty if it was no track. [main]
  void setShown(std::string busName);
  /// Presses a key; one that a person pressed is for the player shown. [main]
  void press(std::int32_t key, mediakey::Purpose purpose);

 private:
  class Core;
  std::unique_ptr<Core> core_;
  /// [main]
  std::string shown_;
};

}  // namespace quillmere::mpris
