// All fields of a state as they travel to the windows, to compare the state of one process with that of another.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "remote/MixerHost.h"
#include "remote/SendMessage.h"

namespace quillmere::fuzz {

/// Fields are floats as floats are: one that holds 0.0 and is told -0.0 has not changed.
inline void forgetSignsOfZero(nlohmann::json& form) {
  if (form.is_number_float() && form.get<double>() == 0.0) form = 0.0;
  if (!form.is_structured()) return;
  for (auto& part : form) forgetSignsOfZero(part);
}

inline std::string formOf(MixerState& state, const Runtime& runtime) {
  nlohmann::json form;
  const MixerHost host(
      state, runtime, [&form](const nlohmann::json& message) { form = message; }, [] { return false; });
  forgetSignsOfZero(form);
  return encodeMessage(form);
}

}  // namespace quillmere::fuzz
