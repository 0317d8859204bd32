// The now-playing dictionary of the player that counts.
#include "platform/linux/MprisNowPlaying.h"

#include <utility>

#include "mpris/PlayerWatcher.h"

namespace quillmere {
namespace {

void put(NowPlayingInfo& info, const char* key, const std::optional<std::string>& text) {
  if (text) info[key] = *text;
}

void put(NowPlayingInfo& info, const char* key, std::optional<double> number) {
  if (number) info[key] = *number;
}

NowPlayingInfo infoOf(const mpris::Player& player, MonotonicTime now) {
  NowPlayingInfo info;
  put(info, nowplaying::title, player.track.title);
  put(info, nowplaying::artist, player.track.artist);
  put(info, nowplaying::album, player.track.album);
  put(info, nowplaying::duration, player.track.durationSeconds);
  put(info, nowplaying::elapsedTime, player.elapsedSeconds(now));
  // A player that plays counts as playing however slowly it says it does.
  constexpr double slowest = 0.02;
  info[nowplaying::playbackRate] = player.isPlaying() ? std::max(player.rate, slowest) : 0.0;
  return info;
}

/// A track without a title is none, so nobody sees it.
std::string shownOf(const std::optional<mpris::Player>& player) {
  return player && player->track.title && !player->track.title->empty() ? player->busName : std::string();
}

}  // namespace

MprisNowPlaying::MprisNowPlaying(const Runtime& runtime, std::shared_ptr<mpris::PlayerWatcher> players,
                                 ProcessResolver resolve)
    : main_(runtime.main),
      background_(runtime.background),
      clocks_(runtime.clocks),
      players_(std::move(players)),
      resolve_(std::move(resolve)) {}

const ChangeSignal& MprisNowPlaying::changes() const { return players_->changes(); }

void MprisNowPlaying::nowPlayingInfo(InfoReply reply) {
  auto player = players_->current();
  std::optional<NowPlayingInfo> info;
  if (player) info = infoOf(*player, clocks_.monotonicNow());
  main_.post([players = players_, shown = shownOf(player), info = std::move(info), reply = std::move(reply)] {
    players->setShown(shown);
    reply(info);
  });
}

void MprisNowPlaying::nowPlayingApplicationPID(PIDReply reply) {
  auto player = players_->current();
  if (!player || player->pid < 1 || !resolve_) {
    std::optional<std::int32_t> pid;
    if (player) pid = player->pid;
    main_.post([pid, reply = std::move(reply)] { reply(pid); });
    return;
  }
  background_.post([&main = main_, resolve = resolve_, player = *std::move(player), reply = std::move(reply)] {
    const auto pid = resolve(player.pid, player.desktopEntry);
    main.post([pid, reply] { reply(pid); });
  });
}

}  // namespace quillmere
