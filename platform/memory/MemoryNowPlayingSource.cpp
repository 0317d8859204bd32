// A now-playing source that a test sets by hand.
#include "platform/memory/MemoryNowPlayingSource.h"

#include <utility>

namespace quillmere {

void MemoryNowPlayingSource::nowPlayingInfo(InfoReply reply) {
  {
    const std::lock_guard lock(mutex_);
    ++infoRequests_;
  }
  answer([this, reply = std::move(reply)] {
    std::optional<NowPlayingInfo> info;
    {
      const std::lock_guard lock(mutex_);
      info = info_;
    }
    main_.post([reply, info = std::move(info)] { reply(info); });
  });
}

void MemoryNowPlayingSource::nowPlayingApplicationPID(PIDReply reply) {
  {
    const std::lock_guard lock(mutex_);
    ++pidRequests_;
  }
  answer([this, reply = std::move(reply)] {
    std::optional<std::int32_t> pid;
    {
      const std::lock_guard lock(mutex_);
      pid = pid_;
    }
    main_.post([reply, pid] { reply(pid); });
  });
}

void MemoryNowPlayingSource::answer(Work work) {
  {
    const std::lock_guard lock(mutex_);
    if (mode_ == Mode::drops) return;
    if (mode_ == Mode::holds) {
      held_.push_back(std::move(work));
      return;
    }
  }
  work();
}

void MemoryNowPlayingSource::setInfo(std::optional<NowPlayingInfo> info) {
  const std::lock_guard lock(mutex_);
  info_ = std::move(info);
  changes_.raise();
}

void MemoryNowPlayingSource::setApplicationPID(std::optional<std::int32_t> pid) {
  const std::lock_guard lock(mutex_);
  pid_ = pid;
  changes_.raise();
}

void MemoryNowPlayingSource::setTrack(const std::string& title, bool playing, std::int32_t pid) {
  setInfo(NowPlayingInfo{{nowplaying::title, title}, {nowplaying::playbackRate, playing ? 1.0 : 0.0}});
  setApplicationPID(pid);
}

void MemoryNowPlayingSource::setMode(Mode mode) {
  const std::lock_guard lock(mutex_);
  mode_ = mode;
  changes_.raise();
}

void MemoryNowPlayingSource::releaseHeld() {
  std::vector<Work> held;
  {
    const std::lock_guard lock(mutex_);
    held.swap(held_);
  }
  for (const auto& work : held) work();
}

int MemoryNowPlayingSource::infoRequestCount() const {
  const std::lock_guard lock(mutex_);
  return infoRequests_;
}

int MemoryNowPlayingSource::pidRequestCount() const {
  const std::lock_guard lock(mutex_);
  return pidRequests_;
}

}  // namespace quillmere
