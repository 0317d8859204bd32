// What a Linux desktop lets a program do. Nothing has to be granted beforehand here: the desktop either offers a thing
// to every program, asks by itself when it is used, or does not have it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Permissions.h"
#include "runtime/Logger.h"
#include "runtime/Runtime.h"

namespace quillmere {

namespace portal {
class Portal;
}

struct LinuxPermissionsOptions {
  /// What the session's desktop is called; absent means what the session says.
  std::optional<std::vector<std::string>> desktops;
  /// Whether windows are X11's, where every program may take part in the keyboard; absent means what the session says.
  std::optional<bool> isX11;
};

/// Trusted: on X11, and on Wayland where the portal hands out global shortcuts. Focus: authorised where the desktop
/// tells its do-not-disturb state, denied where the bus forbids to ask for it, not determined where nobody knows of
/// one. [main]
class LinuxPermissions final : public Permissions {
 public:
  LinuxPermissions(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                   LinuxPermissionsOptions options = {});
  ~LinuxPermissions() override;

  [[nodiscard]] bool isProcessTrusted() override;
  /// Nothing: the portal asks when a shortcut is first taken.
  void promptForTrust() override {}
  [[nodiscard]] int focusAuthorization() override;
  /// No desktop has a question for it: looks anew, and has answered.
  void requestFocusAuthorization(std::function<void()> answered) override;
  /// Starts the settings of the desktop that runs, at its shortcuts or its notifications.
  bool openSettings(const std::string& anchor) override;
  void onChanged(std::function<void()> callback) override;

 private:
  struct State;
  void look(std::function<void()> looked = {});

  std::shared_ptr<portal::Portal> portal_;
  Runtime runtime_;
  Logger log_;
  std::vector<std::string> desktops_;
  bool isX11_;
  std::shared_ptr<State> state_;
};

/// The command that opens a desktop's settings at an anchor; empty where none is known. `desktops` are the session's
/// names for it. [any]
[[nodiscard]] std::vector<std::string> settingsCommand(const std::string& anchor,
                                                       const std::vector<std::string>& desktops);

}  // namespace quillmere
