// Media players' properties.
#include "mpris/Player.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <tuple>

#include "text/CleanText.h"

namespace quillmere::mpris {
namespace {

struct FreeVariant {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, FreeVariant>;

constexpr double microsInSecond = 1e6;
/// Beyond ten years it is no length of a track.
constexpr double maxSeconds = 10.0 * 365.0 * 86400.0;
constexpr gsize maxArtists = 32;

bool isDictionary(GVariant* value) {
  return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE_VARDICT) != FALSE;
}

Variant lookUp(GVariant* dictionary, const char* key) {
  return Variant(g_variant_lookup_value(dictionary, key, nullptr));
}

bool isText(GVariant* value) { return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != FALSE; }

std::string_view textIn(GVariant* value) {
  gsize length = 0;
  const char* text = g_variant_get_string(value, &length);
  return {text, length};
}

std::optional<std::string> textOf(GVariant* dictionary, const char* key) {
  const auto value = lookUp(dictionary, key);
  if (!isText(value.get())) return std::nullopt;
  return cleanText(textIn(value.get()), maxTrackTextBytes);
}

/// A list of names, or the one name that some players give instead.
std::optional<std::string> namesOf(GVariant* dictionary, const char* key) {
  const auto value = lookUp(dictionary, key);
  if (isText(value.get())) return cleanText(textIn(value.get()), maxTrackTextBytes);
  if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY) == FALSE) return std::nullopt;
  std::string names;
  const auto count = std::min(g_variant_n_children(value.get()), maxArtists);
  for (gsize index = 0; index < count; ++index) {
    const Variant child(g_variant_get_child_value(value.get(), index));
    const auto name = cleanText(textIn(child.get()), maxTrackTextBytes);
    if (name.empty()) continue;
    if (!names.empty()) names += ", ";
    names += name;
  }
  return cleanText(names, maxTrackTextBytes);
}

/// Players give lengths as any kind of number.
std::optional<double> numberOf(GVariant* value) {
  if (value == nullptr) return std::nullopt;
  switch (g_variant_classify(value)) {
    case G_VARIANT_CLASS_INT64:
      return static_cast<double>(g_variant_get_int64(value));
    case G_VARIANT_CLASS_UINT64:
      return static_cast<double>(g_variant_get_uint64(value));
    case G_VARIANT_CLASS_INT32:
      return static_cast<double>(g_variant_get_int32(value));
    case G_VARIANT_CLASS_UINT32:
      return static_cast<double>(g_variant_get_uint32(value));
    case G_VARIANT_CLASS_DOUBLE:
      return g_variant_get_double(value);
    default:
      return std::nullopt;
  }
}

std::optional<double> secondsOf(std::optional<double> micros) {
  if (!micros || !std::isfinite(*micros)) return std::nullopt;
  const double seconds = *micros / microsInSecond;
  if (seconds < 0.0 || seconds > maxSeconds) return std::nullopt;
  return seconds;
}

PlaybackStatus statusOf(GVariant* value) {
  if (!isText(value)) return PlaybackStatus::unknown;
  const auto text = textIn(value);
  if (text == "Playing") return PlaybackStatus::playing;
  if (text == "Paused") return PlaybackStatus::paused;
  if (text == "Stopped") return PlaybackStatus::stopped;
  return PlaybackStatus::unknown;
}

}  // namespace

std::optional<double> Player::elapsedSeconds(MonotonicTime now) const {
  if (!positionSeconds) return std::nullopt;
  double seconds = *positionSeconds;
  if (isPlaying()) seconds += rate * std::chrono::duration<double>(now - positionAt).count();
  if (track.durationSeconds && *track.durationSeconds > 0.0) seconds = std::min(seconds, *track.durationSeconds);
  return std::max(seconds, 0.0);
}

Track trackOf(GVariant* metadata) {
  Track track;
  if (!isDictionary(metadata)) return track;
  track.title = textOf(metadata, "xesam:title");
  track.artist = namesOf(metadata, "xesam:artist");
  track.album = textOf(metadata, "xesam:album");
  track.durationSeconds = secondsOf(numberOf(lookUp(metadata, "mpris:length").get()));
  return track;
}

std::string desktopEntryOf(GVariant* value) {
  return isText(value) ? cleanText(textIn(value), maxIdentifierBytes) : std::string();
}

void applyPosition(Player& player, std::int64_t micros, MonotonicTime now) {
  player.positionSeconds = secondsOf(static_cast<double>(micros));
  player.positionAt = now;
}

bool applyProperties(Player& player, GVariant* properties, MonotonicTime now, std::uint64_t& playSequence) {
  if (!isDictionary(properties)) return false;
  bool hasChanged = false;
  if (const auto value = lookUp(properties, "PlaybackStatus")) {
    const auto status = statusOf(value.get());
    if (status != player.status) {
      // The position runs on from where it stood, until the player tells better.
      if (const auto elapsed = player.elapsedSeconds(now)) {
        player.positionSeconds = elapsed;
        player.positionAt = now;
      }
      player.status = status;
      if (status == PlaybackStatus::playing) player.lastPlayed = ++playSequence;
      hasChanged = true;
    }
  }
  if (const auto value = lookUp(properties, "Rate")) {
    const auto rate = numberOf(value.get());
    const bool isUsable = rate && std::isfinite(*rate) && *rate > 0.0 && *rate < 1000.0;
    if (const auto elapsed = player.elapsedSeconds(now)) {
      player.positionSeconds = elapsed;
      player.positionAt = now;
    }
    player.rate = isUsable ? *rate : 1.0;
  }
  if (const auto value = lookUp(properties, "Metadata")) {
    auto track = trackOf(value.get());
    if (track != player.track) {
      player.track = std::move(track);
      player.positionSeconds.reset();
      hasChanged = true;
    }
  }
  if (const auto value = lookUp(properties, "Position")) {
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_INT64) != FALSE) {
      applyPosition(player, g_variant_get_int64(value.get()), now);
    }
  }
  return hasChanged;
}

const Player* countingPlayer(const Players& players) {
  const Player* best = nullptr;
  const auto rank = [](const Player& player) {
    // Earlier discovered ones win a tie, so that the choice stays.
    return std::tuple(player.isPlaying(), player.lastPlayed, player.status == PlaybackStatus::paused,
                      player.track.title.has_value(), ~player.discovered);
  };
  for (const auto& [name, player] : players) {
    if (player.status == PlaybackStatus::unknown && !player.track.title) continue;
    if (best == nullptr || rank(*best) < rank(player)) best = &player;
  }
  return best;
}

}  // namespace quillmere::mpris
