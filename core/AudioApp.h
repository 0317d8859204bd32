// One application in the mixer, as the views show it and the settings store it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace quillmere {

/// Equality is field by field; texts are equal if their UTF-8 bytes are, floats as floats are: 0.0 is -0.0, NaN
/// nothing.
struct AudioApp {
  /// The application's identifier; the record's identity.
  std::string bundleID;
  /// Display name.
  std::string name;
  /// Linear amplitude factor the user set; 0 to 1 by convention, not enforced here. 1 leaves the sound as it is.
  float gain = 1.0F;
  bool muted = false;
  /// The output device this application is pinned to; absent follows the system default.
  std::optional<std::string> routedDeviceUID;

  [[nodiscard]] const std::string& id() const { return bundleID; }

  friend bool operator==(const AudioApp&, const AudioApp&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::AudioApp> {
  /// Equal values hash alike: -0.0 hashes as 0.0.
  std::size_t operator()(const quillmere::AudioApp& app) const noexcept;
};
