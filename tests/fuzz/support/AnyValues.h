// Values of the mixer's kinds made of a fuzzer's bytes: mostly right, which leads further in than noise, and now and
// then anything at all.
#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/AudioApp.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/Uuid.h"
#include "integrations/BrowserTab.h"
#include "support/Bytes.h"

namespace quillmere::fuzz {

inline constexpr std::array<std::string_view, 7> applications{
    "com.spotify.client", "us.zoom.xos", "com.google.Chrome", "org.example.editor", "", "org.mozilla.firefox", "x"};
inline constexpr std::array<std::string_view, 32> keys{"type",
                                                       "name",
                                                       "value",
                                                       "values",
                                                       "arguments",
                                                       "bundleID",
                                                       "gain",
                                                       "muted",
                                                       "id",
                                                       "apps",
                                                       "routedDeviceUID",
                                                       "focusModeID",
                                                       "updatedAt",
                                                       "title",
                                                       "artist",
                                                       "isPlaying",
                                                       "targetGain",
                                                       "triggerBundleIDs",
                                                       "duckedBundleIDs",
                                                       "fadeMillis",
                                                       "isActive",
                                                       "isDefault",
                                                       "uid",
                                                       "urlString",
                                                       "secondsSinceReference",
                                                       "items",
                                                       "kind",
                                                       "children",
                                                       "browserBundleID",
                                                       "restoreDelayMillis",
                                                       "isAvailable",
                                                       "text"};

inline std::string anyText(Bytes& in) {
  switch (in.below(4)) {
    case 0:
      return std::string(in.text());
    case 1:
      return std::string(in.oneOf(std::array<std::string_view, 4>{"speakers", "headset", "\xFF\xFE", "\xD7\x90"}));
    default:
      return std::string(in.oneOf(applications));
  }
}

template <typename T>
struct Any;

template <>
struct Any<bool> {
  static bool make(Bytes& in) { return in.flag(); }
};
template <>
struct Any<int> {
  static int make(Bytes& in) { return in.flag() ? in.number<std::int8_t>() : in.number<std::int32_t>(); }
};
template <>
struct Any<float> {
  static float make(Bytes& in) { return in.flag() ? static_cast<float>(in.byte()) / 200.0F : in.number<float>(); }
};
template <>
struct Any<std::string> {
  static std::string make(Bytes& in) { return anyText(in); }
};
template <>
struct Any<Uuid> {
  static Uuid make(Bytes& in) {
    Uuid id;
    id.bytes[0] = in.byte() % 4;
    return id;
  }
};
template <typename T>
struct Any<std::optional<T>> {
  static std::optional<T> make(Bytes& in) { return in.flag() ? std::optional<T>(Any<T>::make(in)) : std::nullopt; }
};
template <typename T>
struct Any<std::set<T>> {
  static std::set<T> make(Bytes& in) {
    std::set<T> values;
    for (auto left = in.below(5); left > 0; --left) values.insert(Any<T>::make(in));
    return values;
  }
};
template <>
struct Any<AudioApp> {
  static AudioApp make(Bytes& in) {
    return {Any<std::string>::make(in), Any<std::string>::make(in), Any<float>::make(in), Any<bool>::make(in),
            Any<std::optional<std::string>>::make(in)};
  }
};
template <>
struct Any<Profile> {
  static Profile make(Bytes& in) {
    Profile profile;
    profile.id = Any<Uuid>::make(in);
    profile.name = Any<std::string>::make(in);
    for (auto left = in.below(4); left > 0; --left) profile.apps.push_back(Any<AudioApp>::make(in));
    profile.focusModeID = Any<std::optional<std::string>>::make(in);
    profile.updatedAt.secondsSinceReference = in.number<double>();
    return profile;
  }
};
template <>
struct Any<DuckRule> {
  static DuckRule make(Bytes& in) {
    return {Any<std::set<std::string>>::make(in), Any<std::set<std::string>>::make(in), Any<float>::make(in),
            in.number<std::int64_t>(), in.flag() ? in.byte() : in.number<std::int64_t>()};
  }
};
template <>
struct Any<BrowserTab> {
  static BrowserTab make(Bytes& in) {
    BrowserTab tab;
    tab.browserBundleID = anyText(in);
    tab.id = in.flag() ? anyText(in)
                       : tab.browserBundleID + ":w" + std::to_string(in.byte()) + ":t" + std::to_string(in.byte());
    tab.title = anyText(in);
    tab.urlString = anyText(in);
    tab.isActive = in.flag();
    return tab;
  }
};

inline nlohmann::json anyJson(Bytes& in, int depth = 0) {
  const auto kind = in.below(depth < 4 ? 14 : 10);
  switch (kind) {
    case 0:
      return nullptr;
    case 1:
      return in.flag();
    case 2:
      return in.number<std::int8_t>();
    case 3:
      return in.number<std::int64_t>();
    case 4:
      return in.number<std::uint64_t>();
    case 5:
      return in.number<double>();
    case 6:
      return in.number<float>();
    case 7:
      return nlohmann::json::binary({in.byte(), in.byte()});
    case 8:
    case 9:
      return anyText(in);
    case 10:
    case 11: {
      auto list = nlohmann::json::array();
      for (auto left = in.below(6); left > 0; --left) list.push_back(anyJson(in, depth + 1));
      return list;
    }
    default: {
      auto object = nlohmann::json::object();
      for (auto left = in.below(8); left > 0; --left) {
        const auto key = std::string(in.flag() ? in.oneOf(keys) : in.text());
        object[key] = anyJson(in, depth + 1);
      }
      return object;
    }
  }
}

/// The form of a value of this kind; now and then something else instead, or in its middle.
inline nlohmann::json bent(Bytes& in, nlohmann::json form) {
  const auto how = in.byte();
  if (how < 0xE0) return form;
  if (how < 0xF0 || !form.is_structured() || form.empty()) return anyJson(in);
  auto at = std::next(form.begin(), static_cast<std::ptrdiff_t>(in.below(form.size())));
  if (form.is_object() && in.flag()) {
    form.erase(at);
  } else {
    *at = anyJson(in);
  }
  return form;
}

}  // namespace quillmere::fuzz
