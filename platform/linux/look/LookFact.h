// One word of a desktop on how programs should look. Pure: [any].
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../bus/Handles.h"

namespace quillmere::look {

enum class Wish { stillness, contrast };

struct Fact {
  /// Whose word it is; a later one of the same source takes its place.
  std::string source;
  Wish wish = Wish::stillness;
  bool isWished = false;

  friend bool operator==(const Fact&, const Fact&) = default;
};

/// What the portal's setting `key` in the namespace `space` says; absent where it says nothing of this, or in a type of
/// its own. Boxes around the value are opened.
[[nodiscard]] std::optional<Fact> factOf(const std::string& space, const std::string& key, GVariant* value);

/// What the settings files of toolkits and desktops say, below the user's configuration folder; `desktops` are the
/// session's names for itself. Reads the disk.
[[nodiscard]] std::vector<Fact> factsInFiles(const std::string& configHome, const std::vector<std::string>& desktops);

/// The namespaces of the portal's settings that factOf() knows.
[[nodiscard]] const std::vector<const char*>& portalSpaces();

}  // namespace quillmere::look
