// How long a test waits for another thread or process before it says that nothing comes.
#pragma once

#include <chrono>

namespace quillmere::support {

inline constexpr std::chrono::seconds longEnough{10};

}  // namespace quillmere::support
