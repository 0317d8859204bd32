// From the source's dictionary to a track: what is read, what a missing or mistyped value means.
#include "integrations/NowPlayingMonitor.h"

#include <utility>

#include "runtime/Completion.h"
#include "runtime/Poll.h"

namespace quillmere {

namespace {

/// A rate must be above this to count as playing.
constexpr double playingRate = 0.01;

template <typename T>
std::optional<T> typed(const NowPlayingInfo& info, const char* key) {
  const auto entry = info.find(key);
  if (entry == info.end() || !std::holds_alternative<T>(entry->second)) return std::nullopt;
  return std::get<T>(entry->second);
}

std::optional<NowPlayingTrack> trackFrom(const NowPlayingInfo& info) {
  NowPlayingTrack track;
  track.title = typed<std::string>(info, nowplaying::title).value_or("");
  if (track.title.empty()) return std::nullopt;
  track.artist = typed<std::string>(info, nowplaying::artist);
  track.album = typed<std::string>(info, nowplaying::album);
  track.elapsedTime = typed<double>(info, nowplaying::elapsedTime);
  track.totalDuration = typed<double>(info, nowplaying::duration);
  track.isPlaying = typed<double>(info, nowplaying::playbackRate).value_or(0.0) > playingRate;
  return track;
}

std::optional<std::string> applicationOf(std::int32_t pid, Workspace& workspace) {
  if (pid < 1) return std::nullopt;
  for (const auto& application : workspace.runningApplications()) {
    if (application.pid == pid) return application.bundleID;
  }
  return std::nullopt;
}

/// One poll. Stays suspended for as long as the source does not answer.
Async<std::optional<NowPlayingTrack>> fetch(NowPlayingSource& source, Workspace& workspace) {
  // Both questions are asked before either answer is waited for.
  Completion<std::optional<NowPlayingInfo>> info;
  Completion<std::optional<std::string>> application;
  source.nowPlayingInfo(info.resolver());
  source.nowPlayingApplicationPID([resolve = application.resolver(), &workspace](std::optional<std::int32_t> pid) {
    resolve(applicationOf(pid.value_or(0), workspace));
  });

  const auto answer = co_await info;
  std::optional<NowPlayingTrack> track;
  if (answer && *answer) track = trackFrom(**answer);
  if (!track) co_return std::nullopt;
  const auto bundleID = co_await application;
  if (bundleID) track->sourceBundleID = *bundleID;
  co_return track;
}

}  // namespace

NowPlayingMonitor::NowPlayingMonitor(NowPlayingSource& source, Workspace& workspace, const Runtime& runtime,
                                     Duration pollInterval)
    : source_(source), workspace_(workspace), background_(runtime.background), pollInterval_(pollInterval) {}

Stream<std::optional<NowPlayingTrack>> NowPlayingMonitor::stream() const {
  using Tracks = Stream<std::optional<NowPlayingTrack>>;
  return Tracks::produce(background_,
                         [&source = source_, &workspace = workspace_, interval = pollInterval_](
                             TaskContext& task, Tracks::Writer& writer) -> Async<void> {
                           // The applications only name the player: no reason to have them looked for.
                           const ChangeWatch watch({&source.changes()}, {&workspace.changes()});
                           co_await poll<std::optional<NowPlayingTrack>>(
                               task, writer, interval, watch,
                               [&source, &workspace] { return fetch(source, workspace); });
                         });
}

}  // namespace quillmere
