// In which languages the session wants its texts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmere {

/// The rule by itself. `locale` is the C library's locale for messages, "de_AT.UTF-8"; `list` what LANGUAGE holds,
/// "de:en". The list comes before the locale, but a locale without a language ("C", "POSIX", "C.UTF-8") asks for none,
/// whatever the list says: so the C library decides, which finds the texts of the status item. Best first, without
/// encodings and variants: "de_AT". [any]
[[nodiscard]] std::vector<std::string> languagesOf(std::string_view locale, std::string_view list);

/// Those of this process's environment. Sets the C library's locale for messages from it and no other one, so numbers
/// stay as they are; a locale that the system lacks is "C". At the start of a program, before its threads. [main]
std::vector<std::string> sessionLanguages();

}  // namespace quillmere
