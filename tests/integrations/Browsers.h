// Identifiers of browsers that more than one test names.
#pragma once

namespace quillmere {

inline constexpr const char* chrome = "com.google.Chrome";
inline constexpr const char* safari = "com.apple.Safari";

}  // namespace quillmere
