// Whether what a stream records comes from a microphone.
#pragma once

#include "GraphModel.h"

namespace quillmere::pipewire {

/// Follows the sound back over the links and through filters and virtual devices. Each node is looked at once, so the
/// way ends in every graph, one that goes round in circles too. [loop]
[[nodiscard]] bool recordsAMicrophone(const GraphModel& model, GlobalID recorder);

}  // namespace quillmere::pipewire
