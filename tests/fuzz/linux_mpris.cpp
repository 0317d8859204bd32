// What media players tell of themselves: any properties, in any order. What is kept of it is within its bounds, what
// counts is chosen as told, and what is told twice is no news.
#include <glib.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "mpris/KeyDecision.h"
#include "mpris/Player.h"
#include "support/AnyVariant.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "text/CleanText.h"

namespace {

using namespace quillmere;
using namespace quillmere::mpris;

// NOLINTNEXTLINE(misc-misleading-bidirectional): that is the point.
constexpr std::string_view rightToLeft = "\xE2\x80\xAE";
constexpr std::array<std::string_view, 20> words{"PlaybackStatus",
                                                 "Playing",
                                                 "Paused",
                                                 "Stopped",
                                                 "Rate",
                                                 "Metadata",
                                                 "Position",
                                                 "xesam:title",
                                                 "xesam:artist",
                                                 "xesam:album",
                                                 "mpris:length",
                                                 "A title",
                                                 "",
                                                 " ",
                                                 "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                                                 "\n",
                                                 rightToLeft,
                                                 "mpris:trackid",
                                                 "firefox",
                                                 "https://example.org/"};
constexpr double tenYears = 10.0 * 365.0 * 86400.0;

bool isClean(const std::optional<std::string>& text) {
  return !text || (text->size() <= maxTrackTextBytes && cleanText(*text, maxTrackTextBytes) == *text);
}

void requireSane(const Player& player, MonotonicTime now, std::uint64_t playSequence) {
  const auto& track = player.track;
  QUILLMERE_REQUIRE(isClean(track.title) && isClean(track.artist) && isClean(track.album));
  QUILLMERE_REQUIRE(!track.durationSeconds || (*track.durationSeconds >= 0.0 && *track.durationSeconds <= tenYears));
  QUILLMERE_REQUIRE(!player.positionSeconds || std::isfinite(*player.positionSeconds));
  QUILLMERE_REQUIRE(player.rate > 0.0 && player.rate < 1000.0);
  QUILLMERE_REQUIRE(player.lastPlayed <= playSequence);
  QUILLMERE_REQUIRE(player.desktopEntry.size() <= maxIdentifierBytes);
  if (const auto elapsed = player.elapsedSeconds(now)) {
    QUILLMERE_REQUIRE(std::isfinite(*elapsed) && *elapsed >= 0.0);
    const auto length = track.durationSeconds.value_or(0.0);
    if (length > 0.0) QUILLMERE_REQUIRE(*elapsed <= length);
  }
}

class World {
 public:
  explicit World(fuzz::Bytes& in) : in_(in) {
    for (const auto* name : {"org.mpris.MediaPlayer2.a", "org.mpris.MediaPlayer2.b", "org.mpris.MediaPlayer2.c"}) {
      auto& player = players_[name];
      player.busName = name;
      player.discovered = players_.size();
    }
  }

  void run() {
    for (int left = 64; left > 0 && !in_.isEmpty(); --left) {
      step();
      requireChoice();
    }
  }

 private:
  void step() {
    auto& player = std::next(players_.begin(), static_cast<std::ptrdiff_t>(in_.below(players_.size())))->second;
    switch (in_.below(8)) {
      case 0:
        now_ += std::chrono::milliseconds(in_.number<std::uint16_t>());
        break;
      case 1:
        applyPosition(player, in_.number<std::int64_t>(), now_);
        break;
      case 2: {
        const auto name = bus::owned(fuzz::anyVariant(in_, words));
        player.desktopEntry = desktopEntryOf(name.get());
        break;
      }
      case 3:
        tell(player, fuzz::variantFromBytes(in_.longText(), "a{sv}"));
        break;
      case 4:
        tell(player, bus::owned(fuzz::anyVariant(in_, words)));
        break;
      default:
        tell(player, properties());
        break;
    }
    requireSane(player, now_, playSequence_);
  }

  /// As a player writes them, mostly.
  bus::Variant properties() {
    GVariantBuilder entries;
    g_variant_builder_init(&entries, G_VARIANT_TYPE_VARDICT);
    if (in_.flag()) {
      constexpr std::array<const char*, 4> states{"Playing", "Paused", "Stopped", "playing"};
      g_variant_builder_add(&entries, "{sv}", "PlaybackStatus", g_variant_new_string(in_.oneOf(states)));
    }
    if (in_.flag()) g_variant_builder_add(&entries, "{sv}", "Rate", fuzz::anyVariant(in_, words));
    if (in_.flag()) g_variant_builder_add(&entries, "{sv}", "Position", fuzz::anyVariant(in_, words));
    if (in_.flag()) {
      GVariantBuilder track;
      g_variant_builder_init(&track, G_VARIANT_TYPE_VARDICT);
      for (const auto* key : {"xesam:title", "xesam:artist", "xesam:album", "mpris:length"}) {
        if (in_.flag()) g_variant_builder_add(&track, "{sv}", key, fuzz::anyVariant(in_, words));
      }
      g_variant_builder_add(&entries, "{sv}", "Metadata", g_variant_builder_end(&track));
    }
    return bus::owned(g_variant_builder_end(&entries));
  }

  void tell(Player& player, const bus::Variant& told) {
    static_cast<void>(applyProperties(player, told.get(), now_, playSequence_));
    const auto once = player;
    const auto sequence = playSequence_;
    // What is told once more is no news, and begins no other run of playing.
    QUILLMERE_REQUIRE(!applyProperties(player, told.get(), now_, playSequence_));
    QUILLMERE_REQUIRE(player.track == once.track && player.status == once.status && player.rate == once.rate);
    QUILLMERE_REQUIRE(playSequence_ == sequence && player.lastPlayed == once.lastPlayed);
  }

  void requireChoice() {
    const auto* counting = countingPlayer(players_);
    for (const auto& [name, player] : players_) {
      const bool hasTold = player.status != PlaybackStatus::unknown || player.track.title;
      if (hasTold) QUILLMERE_REQUIRE(counting != nullptr);
      if (player.isPlaying()) {
        QUILLMERE_REQUIRE(counting->isPlaying() && counting->lastPlayed >= player.lastPlayed);
      }
    }
    for (const auto key : {mediakey::play, mediakey::next, mediakey::previous, std::int32_t{0}}) {
      for (const auto purpose : {mediakey::Purpose::person, mediakey::Purpose::pause, mediakey::Purpose::resume}) {
        if (key != mediakey::play && purpose != mediakey::Purpose::person) continue;
        const auto run = pausedRun_;
        const auto call = decideKey(key, purpose, "org.mpris.MediaPlayer2.b", players_, pausedRun_);
        if (!call) continue;
        QUILLMERE_REQUIRE(players_.contains(call->busName));
        const std::string_view method = call->method;
        if (purpose == mediakey::Purpose::pause) {
          QUILLMERE_REQUIRE(method == "Pause" && players_.at(call->busName).isPlaying() && pausedRun_ != 0);
        } else if (purpose == mediakey::Purpose::resume) {
          QUILLMERE_REQUIRE(method == "Play" && run != 0 && pausedRun_ == 0);
        } else {
          QUILLMERE_REQUIRE(method == "PlayPause" || method == "Next" || method == "Previous");
        }
      }
    }
  }

  fuzz::Bytes& in_;
  Players players_;
  MonotonicTime now_{};
  std::uint64_t playSequence_ = 0;
  std::uint64_t pausedRun_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  World(in).run();
  return 0;
}
