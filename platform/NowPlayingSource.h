// What the machine plays: a dictionary and a process id, both answered later on the main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "runtime/ChangeSignal.h"

namespace quillmere {

using NowPlayingValue = std::variant<std::string, double, std::int64_t, bool>;
using NowPlayingInfo = std::map<std::string, NowPlayingValue>;

namespace nowplaying {
inline constexpr const char* title = "kMRMediaRemoteNowPlayingInfoTitle";
inline constexpr const char* artist = "kMRMediaRemoteNowPlayingInfoArtist";
inline constexpr const char* album = "kMRMediaRemoteNowPlayingInfoAlbum";
/// Seconds, double.
inline constexpr const char* elapsedTime = "kMRMediaRemoteNowPlayingInfoElapsedTime";
/// Seconds, double.
inline constexpr const char* duration = "kMRMediaRemoteNowPlayingInfoDuration";
/// Double; above 0.01 while playing.
inline constexpr const char* playbackRate = "kMRMediaRemoteNowPlayingInfoPlaybackRate";
}  // namespace nowplaying

class NowPlayingSource {
 public:
  using InfoReply = std::function<void(std::optional<NowPlayingInfo>)>;
  using PIDReply = std::function<void(std::optional<std::int32_t>)>;

  virtual ~NowPlayingSource() = default;
  /// Raised after one of the two has another answer than before; stale while an answer changes by itself, as a position
  /// does. Of a source that doesn't know: absent. [any]
  [[nodiscard]] virtual const ChangeSignal& changes() const { return ChangeSignal::absent(); }
  /// Replies once on [main]; absent where nothing can be asked. A source that hangs may never reply. [any]
  virtual void nowPlayingInfo(InfoReply reply) = 0;
  /// Replies once on [main] with the playing application's process id; below 1 means none. [any]
  virtual void nowPlayingApplicationPID(PIDReply reply) = 0;
};

}  // namespace quillmere
