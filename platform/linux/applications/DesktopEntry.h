// One installed application as its desktop entry describes it. Pure: [any].
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "platform/Workspace.h"

namespace quillmere::applications {

struct DesktopEntry {
  /// Path below the applications folder, "/" replaced by "-", without ".desktop".
  std::string id;
  /// In the user's language.
  std::string name;
  std::optional<IconReference> icon;
  Program program;
  /// Words of the command line besides the program; the plainest of several entries stands for a program.
  std::size_t wordCount = 0;
  std::string startupWMClass;
  /// Identifier of the sandbox that the entry starts, if any: a Flatpak id, or a Snap's "<snap>_<command>".
  std::string sandboxID;
  std::string path;
  /// Whether people should see it among applications.
  bool isVisible = true;
  /// The desktops that list it; empty for all.
  std::vector<std::string> onlyShowIn;
  /// The desktops that don't.
  std::vector<std::string> notShowIn;
  /// The program whose absence means that the application is not there either.
  std::string tryExec;
  /// Whether this desktop lists it: visible, meant for it, and its program there. Known once it is read with others.
  bool isListed = false;
  /// Only there to take a later folder's entry of the same id away.
  bool isDeleted = false;
  bool runsInTerminal = false;
  /// Starts other programs inside its own unit: terminal emulators, development environments.
  bool hostsOthers = false;

  friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

/// Reads the text of a desktop file; absent if it is broken or not an application. `problem` says why.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const std::string& id, const std::string& text,
                                                            std::string& problem);

}  // namespace quillmere::applications
