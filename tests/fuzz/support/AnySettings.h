// A settings database that holds anything at all: every key, of every type, with values that are right, damaged or
// none.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "RecordingDefaults.h"
#include "core/Json.h"
#include "state/SettingsStore.h"
#include "support/AnyValues.h"
#include "support/Bytes.h"

namespace quillmere::fuzz {

inline constexpr std::array<const char*, 13> settingsKeys{SettingsStore::Keys::profiles,
                                                          SettingsStore::Keys::activeProfileID,
                                                          SettingsStore::Keys::masterGain,
                                                          SettingsStore::Keys::outputDeviceUID,
                                                          SettingsStore::Keys::onboardingCompleted,
                                                          SettingsStore::Keys::duckRule,
                                                          SettingsStore::Keys::browsersInDuckedV1,
                                                          SettingsStore::Keys::pauseOnHeadphoneDisconnect,
                                                          SettingsStore::Keys::focusCandidates,
                                                          SettingsStore::Keys::appsState,
                                                          "scrollOverRowAdjustsVolume",
                                                          "showDuckBanner",
                                                          "quillmere.unknown"};

template <typename T>
std::vector<T> anyList(Bytes& in) {
  std::vector<T> list;
  for (auto left = in.below(5); left > 0; --left) list.push_back(Any<T>::make(in));
  return list;
}

/// The text that stands for one of the records, or something else.
inline std::string anyRecordText(Bytes& in) {
  std::optional<std::string> written;
  switch (in.below(7)) {
    case 0:
      written = json::encode(anyList<AudioApp>(in));
      break;
    case 1:
      written = json::encode(anyList<Profile>(in));
      break;
    case 2:
      written = json::encode(Any<DuckRule>::make(in));
      break;
    case 3:
      written = json::encode(anyList<std::string>(in));
      break;
    case 4: {
      // A record with one thing in it that is not as it was.
      const auto record = json::encode(anyList<AudioApp>(in));
      if (record)
        written =
            bent(in, nlohmann::json::parse(*record)).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
      break;
    }
    case 5:
      written = anyJson(in).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
      break;
    default:
      break;
  }
  auto text = written.value_or(std::string(in.longText()));
  // Half written, as a disk that was full leaves it.
  if (in.byte() > 0xF0) text.resize(text.size() / 2);
  return text;
}

inline DefaultsValue anyDefaultsValue(Bytes& in) {
  switch (in.below(8)) {
    case 0:
      return in.flag();
    case 1:
      return in.number<double>();
    case 2:
      return std::string(anyText(in));
    case 3:
      return Any<Uuid>::make(in).text();
    default:
      return RecordingDefaults::bytes(anyRecordText(in));
  }
}

/// Those keys that the input names.
inline void fill(Bytes& in, RecordingDefaults& disk) {
  for (int left = 16; left > 0 && !in.isEmpty(); --left) {
    const auto* const key = in.oneOf(settingsKeys);
    disk.set(key, anyDefaultsValue(in));
  }
  disk.clearWritten();
}

/// Equal to the bit: what is no number is equal to itself.
inline bool isSame(const DefaultsValue& left, const DefaultsValue& right) {
  if (left.index() != right.index()) return false;
  if (const auto* real = std::get_if<double>(&left)) {
    return std::bit_cast<std::uint64_t>(*real) == std::bit_cast<std::uint64_t>(std::get<double>(right));
  }
  return left == right;
}

/// Every key but these has in `now` what it had `before`, and no other has come.
inline bool isUntouched(const RecordingDefaults::Values& before, const RecordingDefaults::Values& now,
                        const std::set<std::string>& except) {
  for (const auto& [key, value] : before) {
    if (except.contains(key)) continue;
    const auto found = now.find(key);
    if (found == now.end() || !isSame(found->second, value)) return false;
  }
  return std::ranges::all_of(
      now, [&](const auto& entry) { return except.contains(entry.first) || before.contains(entry.first); });
}

}  // namespace quillmere::fuzz
