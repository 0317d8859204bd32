// The configuration of Auto-Duck and the application sets that its defaults are made of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>

namespace quillmere {

/// Equality is field by field; texts are equal if their UTF-8 bytes are.
struct DuckRule {
  /// Applications whose use of the microphone starts ducking.
  std::set<std::string> triggerBundleIDs;
  /// Applications that are turned down while ducking.
  std::set<std::string> duckedBundleIDs;
  /// Linear gain that ducked applications are taken to.
  float targetGain = 0.0F;
  /// Fade length in milliseconds; stored and editable, read by nobody.
  std::int64_t fadeMillis = 0;
  /// Delay before restoring, in milliseconds; negative counts as 0 where it is used.
  std::int64_t restoreDelayMillis = 0;

  static const std::set<std::string>& defaultMeetingApps();
  static const std::set<std::string>& browserApps();
  /// Music applications and all of browserApps().
  static const std::set<std::string>& defaultMusicApps();

  friend bool operator==(const DuckRule&, const DuckRule&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::DuckRule> {
  std::size_t operator()(const quillmere::DuckRule& rule) const noexcept;
};
