// Media keys to calls of players.
#include "mpris/KeyDecision.h"

#include <algorithm>
#include <utility>

namespace quillmere::mpris {
namespace {

/// Where nothing plays there is nothing to do, and what an earlier press has stopped is still to be resumed.
std::optional<PlayerCall> pause(const Players& players, std::uint64_t& pausedRun) {
  const auto* counting = countingPlayer(players);
  if (counting == nullptr || !counting->isPlaying()) return std::nullopt;
  pausedRun = counting->lastPlayed;
  return PlayerCall{counting->busName, "Pause"};
}

/// A player that has played since was paused by somebody else, and one that has come again never played for us: both
/// have another run.
std::optional<PlayerCall> resume(const Players& players, std::uint64_t& pausedRun) {
  const auto run = std::exchange(pausedRun, 0);
  const auto* counting = countingPlayer(players);
  if (run == 0 || (counting != nullptr && counting->isPlaying())) return std::nullopt;
  const auto paused =
      std::ranges::find_if(players, [run](const auto& entry) { return entry.second.lastPlayed == run; });
  if (paused == players.end()) return std::nullopt;
  return PlayerCall{paused->first, "Play"};
}

const char* methodOf(std::int32_t key) {
  switch (key) {
    case mediakey::play:
      return "PlayPause";
    case mediakey::next:
      return "Next";
    case mediakey::previous:
      return "Previous";
    default:
      return nullptr;
  }
}

}  // namespace

std::optional<PlayerCall> decideKey(std::int32_t key, mediakey::Purpose purpose, const std::string& shown,
                                    const Players& players, std::uint64_t& pausedRun) {
  if (key == mediakey::play && purpose == mediakey::Purpose::pause) return pause(players, pausedRun);
  if (key == mediakey::play && purpose == mediakey::Purpose::resume) return resume(players, pausedRun);
  const auto* const method = methodOf(key);
  if (method == nullptr) return std::nullopt;
  if (players.contains(shown)) return PlayerCall{shown, method};
  const auto* counting = countingPlayer(players);
  return counting == nullptr ? std::nullopt : std::optional(PlayerCall{counting->busName, method});
}

}  // namespace quillmere::mpris
