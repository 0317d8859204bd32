// The texts that are made without the windows' toolkit, in the language of who reads them.
// English is their source. What is an identifier, or only logged, is no text.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

/// Where texts are found. Each answers with a text that lives as long as the program, `source` itself if there is none.
struct TextCatalogue {
  const char* (*find)(const char* source);
  /// By the plural rule of the language; where there is no text, `one` for 1 and `many` for everything else.
  const char* (*findCounted)(const char* one, const char* many, unsigned long number);
};

/// Texts that are made from now on come from there; until then, and after nullptr, they are English. Once at the start
/// of a program; the catalogue must outlive it. [main]
void useTexts(const TextCatalogue* catalogue);

/// The text in the language in use. [main]
[[nodiscard]] std::string translated(const char* source);
/// The same; "%1" in it stands for `value`, whatever that holds.
[[nodiscard]] std::string translated(const char* source, std::string_view value);
/// The form for this number, which "%1" stands for.
[[nodiscard]] std::string translatedCount(const char* one, const char* many, unsigned long number);

}  // namespace quillmere
