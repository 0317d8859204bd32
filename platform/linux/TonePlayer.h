// The sounds "Glass" and "Hero", computed and played through PipeWire as notifications.
// Nothing of it exists while no sound plays.
#pragma once

#include <memory>
#include <string>

#include "platform/SoundPlayer.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// [main] unless told otherwise; the daemon is talked with on [background].
class TonePlayer final : public SoundPlayer {
 public:
  /// `remote` names the daemon's socket; empty means the session's own.
  explicit TonePlayer(const Runtime& runtime, std::string remote = {});
  /// Ends what still plays.
  ~TonePlayer() override;
  TonePlayer(const TonePlayer&) = delete;
  TonePlayer& operator=(const TonePlayer&) = delete;

  /// Starts the sound in the background; without a daemon it is true all the same, and nothing is heard.
  bool play(std::string_view name) override;
  /// How many sounds have not ended yet. [any]
  [[nodiscard]] std::size_t soundingCount() const;

 private:
  class Voices;
  std::shared_ptr<Voices> voices_;
};

}  // namespace quillmere
