// What a desktop gives to a program that it starts, so that its window may come to the front.
#pragma once

#include <string>

namespace quillmere {

/// Empty where there is none. It is for one use: the environment has it no longer, so that no child takes it for its
/// own. Called before there are threads. [main]
[[nodiscard]] std::string takeActivationToken();

}  // namespace quillmere
