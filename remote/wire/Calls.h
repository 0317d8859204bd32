// An operation of the mixer performed, with arguments that travel as a list.
#pragma once

#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>

#include "state/MixerState.h"
#include "wire/Forms.h"

namespace quillmere::wire {

/// Throws where the list is too short or holds something else.
template <typename... Parameters>
void perform(MixerState& state, void (MixerState::*operation)(Parameters...), const nlohmann::json& arguments) {
  [&]<std::size_t... Index>(std::index_sequence<Index...>) {
    (state.*operation)(arguments.at(Index).template get<std::remove_cvref_t<Parameters>>()...);
  }(std::index_sequence_for<Parameters...>{});
}

}  // namespace quillmere::wire
