// What the status item's clicks and entries do.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/ScrollRule.h"
#include "platform/ActivationRequest.h"
#include "platform/StatusItem.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "shell/StatusMenu.h"

namespace quillmere {

class MixerState;
class WindowSystem;

/// Steps outside the state that entries lead to.
struct StatusBarIntents {
  /// Opens the main window and brings the program to the front.
  std::function<void(const ActivationRequest& request)> openMainWindow;
  std::function<void(const StatusItemActivation& activation)> togglePopover;
};

/// [main] throughout. All that is passed in outlives this.
class StatusBarController {
 public:
  StatusBarController(MixerState& state, const Runtime& runtime, WindowSystem& windows, StatusBarIntents intents);

  /// The menu as it should read now.
  [[nodiscard]] std::vector<StatusMenuEntry> rebuildMenu() const;
  /// Does what an entry says. A represented object that is no UUID is ignored.
  void perform(const StatusMenuEntry& entry, const std::string& activationToken = {});
  void handleClick(const StatusItemActivation& activation = {});
  /// The wheel over the icon moves the master as it does over the master's slider.
  void handleScroll(int angleDelta);
  /// Calls back whenever rebuildMenu() would give something else, the countdown aside.
  void observeMenu(const std::function<void()>& changed);
  /// What is to be known without a click: the output's level, how many applications sound, Whisper Mode.
  [[nodiscard]] std::string toolTip() const;
  /// Calls back whenever toolTip() may give something else, for as long as the subscriptions are kept.
  [[nodiscard]] std::vector<Subscription> observeToolTip(const std::function<void()>& changed);

 private:
  MixerState& state_;
  Runtime runtime_;
  WindowSystem& windows_;
  StatusBarIntents intents_;
  ScrollSteps scroll_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
