// Messages between the two programs, made of a fuzzer's bytes.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "remote/SendMessage.h"
#include "state/MixerState.h"
#include "support/AnyValues.h"
#include "support/Bytes.h"
#include "wire/Forms.h"

namespace quillmere::fuzz {

/// An operation of the mixer, and how the list of its arguments is made.
struct Operation {
  std::string name;
  nlohmann::json (*arguments)(Bytes& in);
};

template <typename... Parameters>
Operation operationOf(const char* name, void (MixerState::* /*operation*/)(Parameters...)) {
  return {name, [](Bytes& in) {
            auto list = nlohmann::json::array();
            (list.push_back(bent(in, nlohmann::json(Any<Parameters>::make(in)))), ...);
            static_cast<void>(in);
            return list;
          }};
}

inline const std::vector<Operation>& operations() {
  static const auto all = [] {
    std::vector<Operation> list;
    MixerState::visitOperations(
        [&](const char* name, auto operation) { list.push_back(operationOf(name, operation)); });
    return list;
  }();
  return all;
}

inline nlohmann::json anyCall(Bytes& in) {
  const auto& operation = in.oneOf(operations());
  return {{"type", "call"}, {"name", operation.name}, {"arguments", bent(in, operation.arguments(in))}};
}

/// What came over a channel, if it is a message at all.
inline std::optional<nlohmann::json> anyMessage(Bytes& in, const std::vector<std::string>& types) {
  switch (in.below(4)) {
    case 0:
      return decodeMessage(std::string(in.longText()));
    case 1: {
      auto message = anyJson(in, 1);
      if (!message.is_object()) message = nlohmann::json::object();
      message["type"] = in.oneOf(types);
      return message;
    }
    default:
      return anyCall(in);
  }
}

}  // namespace quillmere::fuzz
