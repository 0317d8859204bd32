// What an X11 desktop is told of a launch that it has begun.
#pragma once

#include <string>

namespace quillmere {

/// What was launched with this token is there: the desktop need not show any longer that it waits for it. Nothing
/// happens on another kind of display, where the token's use says as much, or for a token that the desktop doesn't
/// know. [main]
void completeLaunch(const std::string& token);

}  // namespace quillmere
