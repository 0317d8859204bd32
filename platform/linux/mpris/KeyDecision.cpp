// Media keys to calls of players.
#include "mpris/KeyDecision.h"

#include "platform/MediaKeys.h"

namespace quillmere::mpris {
namespace {

const Player* find(const Players& players, const std::string& busName) {
  const auto found = players.find(busName);
  return found == players.end() ? nullptr : &found->second;
}

/// The program saw a track that played: it means "pause". Pausing what is paused already does nothing.
std::optional<PlayerCall> pause(const Player* told, const Player* counting) {
  if (told != nullptr && told->isPlaying()) return PlayerCall{told->busName, "Pause"};
  if (counting != nullptr && counting->isPlaying()) return PlayerCall{counting->busName, "Pause"};
  if (told != nullptr) return PlayerCall{told->busName, "Pause"};
  return std::nullopt;
}

/// The program saw a track that did not play: it means "play", unless something has begun to by itself.
std::optional<PlayerCall> resume(const Player* told, const Player* counting) {
  if (told == nullptr || (counting != nullptr && counting->isPlaying())) return std::nullopt;
  return PlayerCall{told->busName, "Play"};
}

/// The program knows of no track, so what it means is not known: only a pause of our own making is undone.
std::optional<PlayerCall> toggleUntold(const Player* counting, const Players& players, std::string& pausedByKey) {
  if (counting != nullptr && counting->isPlaying()) {
    pausedByKey = counting->busName;
    return PlayerCall{counting->busName, "Pause"};
  }
  const auto* paused = find(players, pausedByKey);
  pausedByKey.clear();
  if (paused == nullptr) return std::nullopt;
  return PlayerCall{paused->busName, "Play"};
}

}  // namespace

std::optional<PlayerCall> decideKey(std::int32_t key, const std::optional<ToldState>& told, const Players& players,
                                    std::string& pausedByKey) {
  const auto* counting = countingPlayer(players);
  const auto* toldPlayer = told ? find(players, told->busName) : nullptr;
  if (key == mediakey::next || key == mediakey::previous) {
    const auto* target = toldPlayer != nullptr ? toldPlayer : counting;
    if (target == nullptr) return std::nullopt;
    return PlayerCall{target->busName, key == mediakey::next ? "Next" : "Previous"};
  }
  if (key != mediakey::play) return std::nullopt;
  if (!told) return toggleUntold(counting, players, pausedByKey);
  pausedByKey.clear();
  return told->isPlaying ? pause(toldPlayer, counting) : resume(toldPlayer, counting);
}

}  // namespace quillmere::mpris
