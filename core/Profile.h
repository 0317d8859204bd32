// A named, saved layout of per-application settings.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/AudioApp.h"
#include "core/Date.h"
#include "core/Uuid.h"

namespace quillmere {

/// Equality is field by field, `apps` in order; texts are equal if their UTF-8 bytes are.
struct Profile {
  Uuid id;
  std::string name;
  std::vector<AudioApp> apps;
  /// Identifier of the system focus mode bound to this profile; reserved.
  std::optional<std::string> focusModeID;
  Date updatedAt;

  friend bool operator==(const Profile&, const Profile&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::Profile> {
  std::size_t operator()(const quillmere::Profile& profile) const noexcept;
};
