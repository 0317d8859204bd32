// From the properties of a client and its first stream to what is known of the application. Pure: [any].
#pragma once

#include <string>

#include "Properties.h"
#include "platform/linux/ClientFacts.h"

namespace quillmere::pipewire {

/// `problem` receives a line if something had to be ignored.
[[nodiscard]] ClientFacts factsOf(const Properties& client, const Properties& stream, std::string& problem);

}  // namespace quillmere::pipewire
