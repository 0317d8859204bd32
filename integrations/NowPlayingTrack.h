// The track that the machine plays, as far as its player tells.
// Compared field by field.
#pragma once

#include <optional>
#include <string>

namespace quillmere {

struct NowPlayingTrack {
  /// Never empty: a track without a title does not exist for this program.
  std::string title;
  std::optional<std::string> artist;
  std::optional<std::string> album;
  /// Identifier of the application that plays.
  std::optional<std::string> sourceBundleID;
  bool isPlaying = false;
  /// Seconds.
  std::optional<double> elapsedTime;
  /// Seconds.
  std::optional<double> totalDuration;

  friend bool operator==(const NowPlayingTrack&, const NowPlayingTrack&) = default;
};

}  // namespace quillmere
