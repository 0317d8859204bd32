// What a press of a media key means for the players there are.
// The program presses the toggle for what it was last told; the answer is a call that stays right if that is out of
// date. Pure: [any].
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Player.h"

namespace quillmere::mpris {

/// The track that the program was last told of.
struct ToldState {
  std::string busName;
  bool isPlaying = false;
};

struct PlayerCall {
  std::string busName;
  /// Of org.mpris.MediaPlayer2.Player.
  const char* method;
};

/// Absent if nothing is to be done.
/// @param told         absent if no track was told
/// @param pausedByKey  bus name of the player without track that a key has paused; kept up to date
[[nodiscard]] std::optional<PlayerCall> decideKey(std::int32_t key, const std::optional<ToldState>& told,
                                                  const Players& players, std::string& pausedByKey);

}  // namespace quillmere::mpris
