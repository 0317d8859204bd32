// The icon in the panel and its menu, as the program sees them: plain data down, clicks up.
// What a panel is, and how it is drawn in, is the host's affair.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmere {

/// The program's own marks that may stand before an entry.
enum class StatusMenuIcon { none, whisper };

struct StatusMenuItem {
  enum class Kind { action, separator, submenu };

  Kind kind = Kind::action;
  /// Positive, and unique in the whole menu, separators included. An entry that stays keeps it, so that its text can
  /// change under the pointer; one that has gone does not pass it on to an entry that does something else.
  int id = 0;
  /// As it is to be read: no mnemonics, nothing escaped.
  std::string title;
  /// An empty submenu is never enabled, whatever this says.
  bool isEnabled = true;
  /// Absent for an entry that is never checked.
  std::optional<bool> isChecked;
  /// One character that goes with the platform's command modifier; empty for none.
  std::string key;
  StatusMenuIcon icon = StatusMenuIcon::none;
  /// Of a submenu.
  std::vector<StatusMenuItem> children;

  friend bool operator==(const StatusMenuItem&, const StatusMenuItem&) = default;
};

/// A place on the screen, in the host's pixels.
struct StatusItemPoint {
  int x = 0;
  int y = 0;

  friend bool operator==(const StatusItemPoint&, const StatusItemPoint&) = default;
};

/// A click on the icon.
struct StatusItemActivation {
  /// Where the host says the click was; absent where it says nothing of use.
  std::optional<StatusItemPoint> at;
  /// What lets a window come to the front on desktops that ask for a reason; empty where the host gives none.
  std::string activationToken;

  friend bool operator==(const StatusItemActivation&, const StatusItemActivation&) = default;
};

/// [main] throughout; nothing here waits for the host. What is set may be set at any time, shown or not, and holds for
/// every panel that comes later. Callbacks come from the main loop, never from within a call, and never after the end.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// Whether a panel that shows status items is there. Called with the first answer, whichever it is, within half a
  /// second of the start, and with every change after it.
  virtual void onAvailabilityChanged(std::function<void(bool isAvailable)> callback) = 0;
  /// As last told; false before the first answer.
  [[nodiscard]] virtual bool isAvailable() const = 0;

  /// Puts the icon into the panel, and into each one that takes its place later.
  virtual void show() = 0;
  /// Replaces the menu. Only what differs is told to the host, so calling this often costs nothing.
  virtual void setMenu(std::vector<StatusMenuItem> menu) = 0;
  virtual void setToolTip(std::string text) = 0;

  /// Any click but the one that opens the menu.
  virtual void onActivated(std::function<void(const StatusItemActivation& activation)> callback) = 0;
  /// An entry of the menu that can be chosen was chosen. Its id may be of a menu that has been replaced in the
  /// meantime; the token is as in StatusItemActivation.
  virtual void onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) = 0;
  /// The host is about to show the menu or a submenu: the time to bring it up to date. Not every host says so.
  virtual void onMenuAboutToShow(std::function<void()> callback) = 0;
  /// The wheel over the icon, in eighths of a degree; positive is away from the user.
  virtual void onScroll(std::function<void(int angleDelta)> callback) = 0;
};

}  // namespace quillmere
