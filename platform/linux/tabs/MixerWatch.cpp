// inotify on the socket's folder, or on the one above while that is missing.
#include "tabs/MixerWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "tabs/MeetingPlace.h"

namespace quillmere::tabs {

MixerWatch::MixerWatch(std::string runtimeFolder)
    : runtimeFolder_(std::move(runtimeFolder)), descriptor_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

MixerWatch::~MixerWatch() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool MixerWatch::watch(const std::string& folder) {
  end();
  watched_ = ::inotify_add_watch(descriptor_, folder.c_str(),
                                 IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR);
  return watched_ >= 0;
}

void MixerWatch::begin() {
  const auto folder = meetingFolder(runtimeFolder_);
  // Looked for once more: it may have been made before the one above was watched.
  if (watch(folder) || !watch(runtimeFolder_)) return;
  static_cast<void>(::access(folder.c_str(), F_OK) == 0 && watch(folder));
}

void MixerWatch::end() {
  if (watched_ >= 0) ::inotify_rm_watch(descriptor_, watched_);
  watched_ = -1;
  drain();
}

void MixerWatch::drain() const {
  std::array<char, 4096> events;
  while (::read(descriptor_, events.data(), events.size()) > 0) continue;
}

}  // namespace quillmere::tabs
