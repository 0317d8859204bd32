// The status item's menu as plain data: titles, keys, marks and actions, in order.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/Date.h"
#include "core/Profile.h"
#include "core/Uuid.h"

namespace quillmere {

enum class StatusAction {
  none,
  separator,
  openMainWindow,
  toggleWhisper,
  sleepFor,
  cancelSleep,
  applyProfile,
  openSettings,
  openAbout,
  checkForUpdates,
  quit
};

struct StatusMenuEntry {
  std::string title;
  StatusAction action = StatusAction::none;
  /// The key that goes with the platform's command modifier; empty for none.
  std::string key;
  /// Minutes, for sleepFor.
  int tag = 0;
  /// A profile's identity as text, for applyProfile; what a submenu is known by, whatever its title tells of the
  /// moment.
  std::string representedObject;
  bool isOn = false;
  bool hasSubmenu = false;
  std::vector<StatusMenuEntry> submenu;

  friend bool operator==(const StatusMenuEntry&, const StatusMenuEntry&) = default;
};

/// What the menu shows of the state, at one moment.
struct StatusMenuInput {
  bool isWhisperMode = false;
  std::optional<Date> sleepTimerEndsAt;
  Date now;
  std::vector<Profile> profiles;
  std::optional<Uuid> activeProfileID;
  bool updateKnown = false;
};

/// The entries in the order in which they stand, in the language in use: whoever shows them shows them as they are.
/// [main]
[[nodiscard]] std::vector<StatusMenuEntry> statusMenu(const StatusMenuInput& input);

}  // namespace quillmere
