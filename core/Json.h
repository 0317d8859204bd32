// The stored JSON forms of the records: strict reading, shortest float text, absent optionals left out.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/AudioApp.h"
#include "core/DuckRule.h"
#include "core/Profile.h"

namespace quillmere::json {

// Writing. Absent where a value has no JSON form (a NaN or infinite number). UTF-8 text out; bytes that are not UTF-8
// become U+FFFD. [any]
[[nodiscard]] std::optional<std::string> encode(const AudioApp& app);
[[nodiscard]] std::optional<std::string> encode(const Profile& profile);
[[nodiscard]] std::optional<std::string> encode(const DuckRule& rule);
[[nodiscard]] std::optional<std::string> encode(const std::vector<AudioApp>& apps);
[[nodiscard]] std::optional<std::string> encode(const std::vector<Profile>& profiles);
[[nodiscard]] std::optional<std::string> encode(const std::vector<std::string>& texts);

// Reading. All or nothing: a missing key, a wrong type or one bad element makes the whole value absent. [any]
// Unknown keys are ignored; a null for an optional text counts as absent. A whole number may be written 300, 300.0 or
// 3e2; 300.5 and "300" are unreadable. A number beyond the range of its type is unreadable.
// `problem`, if given, receives one line that says what was wrong and where.
[[nodiscard]] std::optional<AudioApp> decodeAudioApp(std::string_view text, std::string* problem = nullptr);
[[nodiscard]] std::optional<Profile> decodeProfile(std::string_view text, std::string* problem = nullptr);
[[nodiscard]] std::optional<DuckRule> decodeDuckRule(std::string_view text, std::string* problem = nullptr);
[[nodiscard]] std::optional<std::vector<AudioApp>> decodeAudioApps(std::string_view text,
                                                                   std::string* problem = nullptr);
[[nodiscard]] std::optional<std::vector<Profile>> decodeProfiles(std::string_view text, std::string* problem = nullptr);
[[nodiscard]] std::optional<std::vector<std::string>> decodeTexts(std::string_view text,
                                                                  std::string* problem = nullptr);

}  // namespace quillmere::json
