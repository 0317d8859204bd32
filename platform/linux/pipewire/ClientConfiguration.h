// The configuration that gives a client's data thread real-time priority. It has another name in every second library.
#pragma once

#include <string_view>

#include "LibraryVersion.h"

namespace quillmere::pipewire {

/// [any] Its name for a library of this version, as "1.4.2". Up to 1.2 the plain configuration gives no priority; from
/// 1.4 on it does, and the name of before only makes the library warn. A version that can't be read counts as a new
/// one.
[[nodiscard]] inline const char* realTimeConfiguration(std::string_view version) {
  return libraryVersion(version) < LibraryVersion{1, 4, 0} ? "client-rt.conf" : "client.conf";
}

}  // namespace quillmere::pipewire
