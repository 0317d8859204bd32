// How a Mac names languages, and how the program asks for its texts.
#pragma once

#include <string>

namespace quillmere::macos {

/// "de-AT" as "de_AT", "zh-Hans-CN" as "zh_CN": the language and, where one is named, the country. [any]
[[nodiscard]] std::string localeName(const std::string& languageTag);

}  // namespace quillmere::macos
