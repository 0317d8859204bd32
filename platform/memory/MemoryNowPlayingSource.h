// A now-playing source whose answers a test sets by hand; it can also be missing or hang.
// Replies come through the main executor, as from any source.
#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/NowPlayingSource.h"
#include "runtime/Executor.h"

namespace quillmere {

/// [any]
class MemoryNowPlayingSource final : public NowPlayingSource {
 public:
  /// answers: at once. holds: keeps each question until releaseHeld(). drops: never replies.
  enum class Mode { answers, holds, drops };

  explicit MemoryNowPlayingSource(Executor& main) : main_(main) {}

  /// False: nobody is told that anything has changed.
  void setTellsChanges(bool tells) { tellsChanges_ = tells; }
  [[nodiscard]] const ChangeSignal& changes() const override {
    return tellsChanges_ ? changes_ : ChangeSignal::absent();
  }
  void nowPlayingInfo(InfoReply reply) override;
  void nowPlayingApplicationPID(PIDReply reply) override;

  /// The dictionary to tell; absent (the start value) where nothing can be asked.
  void setInfo(std::optional<NowPlayingInfo> info);
  void setApplicationPID(std::optional<std::int32_t> pid);
  /// A track as a player would tell it, rate 1.0 or 0.0, with the pid of the player.
  void setTrack(const std::string& title, bool playing, std::int32_t pid);
  void setMode(Mode mode);
  /// Answers what is held with what is set now, in the order of the questions.
  void releaseHeld();

  [[nodiscard]] int infoRequestCount() const;
  [[nodiscard]] int pidRequestCount() const;

 private:
  void answer(Work work);

  Executor& main_;
  ChangeSignal changes_;
  std::atomic<bool> tellsChanges_ = true;
  mutable std::mutex mutex_;
  std::optional<NowPlayingInfo> info_;
  std::optional<std::int32_t> pid_;
  Mode mode_ = Mode::answers;
  std::vector<Work> held_;
  int infoRequests_ = 0;
  int pidRequests_ = 0;
};

}  // namespace quillmere
