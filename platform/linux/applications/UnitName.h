// What the name of a process's control group tells of the application it belongs to.
// Desktop environments, Flatpak and Snap start each application in a unit of its own. Pure: [any].
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmere::applications {

struct UnitIdentity {
  enum class Kind { none, desktop, flatpak, snap };
  Kind kind = Kind::none;
  /// Identifiers without ".desktop", the likeliest first. Only an installed entry decides between them, except that a
  /// sandbox's first one stands by itself.
  std::vector<std::string> candidates;

  friend bool operator==(const UnitIdentity&, const UnitIdentity&) = default;
};

/// Undoes systemd's escapes: "google\x2dchrome" gives "google-chrome". A broken escape stays as it is.
[[nodiscard]] std::string unescapeUnit(std::string_view text);

/// Reads one unit name, such as "app-gnome-org.gnome.Totem-4711.scope".
[[nodiscard]] UnitIdentity identityOfUnit(std::string_view unit);

/// Reads the text of /proc/PID/cgroup; the innermost unit that tells something counts.
[[nodiscard]] UnitIdentity identityOfCgroup(std::string_view text);

}  // namespace quillmere::applications
