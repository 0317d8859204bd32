// What the machine plays, from the media players on the session bus.
// Answers from what is known; never waits for a player.
#pragma once

#include <functional>
#include <memory>

#include "platform/NowPlayingSource.h"
#include "runtime/Runtime.h"

namespace quillmere {

namespace mpris {
class PlayerWatcher;
}

/// Asked on [any] thread, as the port is.
class MprisNowPlaying final : public NowPlayingSource {
 public:
  /// The process that stands for a player's application, given the player's process and its desktop entry's id.
  /// [background]
  using ProcessResolver = std::function<std::int32_t(std::int32_t pid, const std::string& desktopEntry)>;

  MprisNowPlaying(const Runtime& runtime, std::shared_ptr<mpris::PlayerWatcher> players, ProcessResolver resolve = {});

  [[nodiscard]] const ChangeSignal& changes() const override;
  void nowPlayingInfo(InfoReply reply) override;
  void nowPlayingApplicationPID(PIDReply reply) override;

 private:
  Executor& main_;
  Executor& background_;
  Clocks& clocks_;
  std::shared_ptr<mpris::PlayerWatcher> players_;
  ProcessResolver resolve_;
};

}  // namespace quillmere
