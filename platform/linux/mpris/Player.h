// What one media player has told of itself over MPRIS, and which of several players counts.
// Pure: no bus in here. [any]
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "runtime/Clocks.h"

// GLib's own forward declaration.
// NOLINTNEXTLINE(bugprone-reserved-identifier,modernize-use-using)
typedef struct _GVariant GVariant;

namespace quillmere::mpris {

struct Track {
  std::optional<std::string> title;
  std::optional<std::string> artist;
  std::optional<std::string> album;
  std::optional<double> durationSeconds;

  friend bool operator==(const Track&, const Track&) = default;
};

enum class PlaybackStatus { unknown, playing, paused, stopped };

struct Player {
  /// The well-known name and the connection behind it.
  std::string busName;
  std::string owner;
  /// Of the connection; 0 where unknown.
  std::int32_t pid = 0;
  std::string desktopEntry;
  PlaybackStatus status = PlaybackStatus::unknown;
  double rate = 1.0;
  Track track;
  std::optional<double> positionSeconds;
  /// When the position was told.
  MonotonicTime positionAt{};
  /// The greater, the later it began to play; 0 if it never did since it is watched.
  std::uint64_t lastPlayed = 0;
  std::uint64_t discovered = 0;

  [[nodiscard]] bool isPlaying() const { return status == PlaybackStatus::playing; }
  /// Seconds at `now`, never beyond the end; absent where the player told no position.
  [[nodiscard]] std::optional<double> elapsedSeconds(MonotonicTime now) const;
};

/// Takes over what a dictionary of properties holds. A value of a wrong type counts as missing, whatever it is.
/// True if the status or the track has changed, so that the position known before is no longer to be relied on.
bool applyProperties(Player& player, GVariant* properties, MonotonicTime now, std::uint64_t& playSequence);

/// The track in a Metadata dictionary; empty if it is none.
[[nodiscard]] Track trackOf(GVariant* metadata);

/// The DesktopEntry property, made fit to be looked up; empty if it is no text.
[[nodiscard]] std::string desktopEntryOf(GVariant* value);

/// Takes a position in microseconds; negative ones count as unknown.
void applyPosition(Player& player, std::int64_t micros, MonotonicTime now);

using Players = std::map<std::string, Player, std::less<>>;

/// The one that plays (the latest to begin, if several do); else the one that played last; else a paused one; else the
/// one that came first. Null if there is none that has told anything.
[[nodiscard]] const Player* countingPlayer(const Players& players);

}  // namespace quillmere::mpris
