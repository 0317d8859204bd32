// How the mixer's values look in a message. Reading is strict: what has another form throws.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

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
    value = form.is_null() ? std::nullopt : std::optional<T>(form.get<T>());
  }
};

namespace quillmere {

/// An enumeration whose last value is `last`, as its number.
template <typename Enumeration>
Enumeration enumerated(const nlohmann::json& form, Enumeration last) {
  const auto number = form.get<int>();
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
  phase = {enumerated(form.at(0), PomodoroPhase::Kind::idle), Date{form.at(1).get<double>()}};
}

// The second function is never called. It takes a record apart, which compiles only into all of its members.
#define QUILLMERE_RECORD(Record, ...)                     \
  NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Record, __VA_ARGS__) \
  inline void expectAllMembers(const Record& record) { [[maybe_unused]] const auto& [__VA_ARGS__] = record; }

#define RECORD QUILLMERE_RECORD
#include "wire/Records.def"

}  // namespace quillmere
