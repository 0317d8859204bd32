// How the mixer's values look in a message. Reading is strict: what has another form throws.
#pragma once

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "core/AudioApp.h"
#include "core/Date.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/Uuid.h"
#include "engine/AudioOutputDevice.h"
#include "integrations/BrowserTab.h"
#include "integrations/NowPlayingTrack.h"
#include "platform/BrowserCompanions.h"
#include "platform/StatusItem.h"
#include "platform/Workspace.h"
#include "state/PomodoroPhase.h"

namespace quillmere {

/// Reads a value of exactly this kind. The library by itself takes true for 1, cuts what is behind the point, and lets
/// a number that is too great for its type come out as another.
template <typename T>
void readInto(const nlohmann::json& form, T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    if (!form.is_boolean()) throw std::invalid_argument("no boolean");
    value = form.get<bool>();
  } else if constexpr (std::is_integral_v<T>) {
    const auto take = [&value](auto number) {
      if (!std::in_range<T>(number)) throw std::out_of_range("a number out of its range");
      value = static_cast<T>(number);
    };
    if (!form.is_number_integer()) throw std::invalid_argument("no whole number");
    if (form.is_number_unsigned()) {
      take(form.get<std::uint64_t>());
    } else {
      take(form.get<std::int64_t>());
    }
  } else if constexpr (std::is_floating_point_v<T>) {
    if (!form.is_number()) throw std::invalid_argument("no number");
    const auto number = form.get<double>();
    // What is no number, and what is infinite, stays so.
    if (std::abs(number) > std::numeric_limits<T>::max()) {
      constexpr T infinity = std::numeric_limits<T>::infinity();
      value = number > 0 ? infinity : -infinity;
    } else {
      value = static_cast<T>(number);
    }
  } else {
    form.get_to(value);
  }
}

template <typename T>
T readAs(const nlohmann::json& form) {
  T value{};
  readInto(form, value);
  return value;
}

}  // namespace quillmere

template <typename T>
struct nlohmann::adl_serializer<std::optional<T>> {
  static void to_json(json& form, const std::optional<T>& value) {
    if (value) {
      form = *value;
    } else {
      form = nullptr;
    }
  }
  static void from_json(const json& form, std::optional<T>& value) {
    value = form.is_null() ? std::nullopt : std::optional<T>(quillmere::readAs<T>(form));
  }
};

namespace quillmere {

/// An enumeration whose last value is `last`, as its number.
template <typename Enumeration>
Enumeration enumerated(const nlohmann::json& form, Enumeration last) {
  const auto number = readAs<int>(form);
  if (number < 0 || number > static_cast<int>(last)) throw std::out_of_range("no such value");
  return static_cast<Enumeration>(number);
}

inline void to_json(nlohmann::json& form, const Uuid& id) { form = id.text(); }
inline void from_json(const nlohmann::json& form, Uuid& id) {
  const auto read = Uuid::parse(form.get<std::string>());
  if (!read) throw std::invalid_argument("no identity");
  id = *read;
}

inline void to_json(nlohmann::json& form, const PomodoroPhase& phase) {
  const auto& [kind, endsAt] = phase;
  form = {static_cast<int>(kind), endsAt.secondsSinceReference};
}
inline void from_json(const nlohmann::json& form, PomodoroPhase& phase) {
  phase = {enumerated(form.at(0), PomodoroPhase::Kind::idle), Date{readAs<double>(form.at(1))}};
}

// The second function is never called. It takes a record apart, which compiles only into all of its members.
#define QUILLMERE_TELL(member) form[#member] = record.member;
#define QUILLMERE_READ(member) readInto(form.at(#member), record.member);
#define QUILLMERE_RECORD(Record, ...)                                      \
  inline void to_json(nlohmann::json& form, const Record& record) {        \
    NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(QUILLMERE_TELL, __VA_ARGS__)) \
  }                                                                        \
  inline void from_json(const nlohmann::json& form, Record& record) {      \
    NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(QUILLMERE_READ, __VA_ARGS__)) \
  }                                                                        \
  inline void expectAllMembers(const Record& record) { [[maybe_unused]] const auto& [__VA_ARGS__] = record; }

#define RECORD QUILLMERE_RECORD
#include "wire/Records.def"

}  // namespace quillmere
