// An operation of the mixer performed, with arguments that travel as a list.
#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

#include "state/MixerState.h"
#include "wire/Forms.h"

namespace quillmere::wire {

template <typename T>
T argument(const nlohmann::json& form) {
  auto value = readAs<T>(form);
  if constexpr (std::is_same_v<T, Profile>) {
    // To apply such a profile is a mistake of the program's, and ends it: none is let in.
    std::set<std::string_view> applications;
    for (const auto& app : value.apps) {
      if (!applications.insert(app.bundleID).second) throw std::invalid_argument("an application stands in it twice");
    }
  }
  return value;
}

/// Throws where the list is too short or holds something else.
template <typename... Parameters>
void perform(MixerState& state, void (MixerState::*operation)(Parameters...), const nlohmann::json& arguments) {
  [&]<std::size_t... Index>(std::index_sequence<Index...>) {
    (state.*operation)(argument<std::remove_cvref_t<Parameters>>(arguments.at(Index))...);
  }(std::index_sequence_for<Parameters...>{});
}

}  // namespace quillmere::wire
