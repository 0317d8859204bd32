// The icon in the panel of a Linux desktop: a StatusNotifierItem with a com.canonical.dbusmenu on the session bus.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/StatusItem.h"
#include "runtime/Clocks.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere {

namespace statusitem {
class ItemOnBus;
}

/// The value of XDG_CURRENT_DESKTOP; empty where there is none. [any]
[[nodiscard]] std::string currentDesktopOfEnvironment();

struct LinuxStatusItemOptions {
  /// D-Bus address; absent means the session's, empty means none.
  std::optional<std::string> busAddress;
  /// What the desktop calls itself: the names in XDG_CURRENT_DESKTOP.
  std::string currentDesktop = currentDesktopOfEnvironment();
  /// After this a bus that has not answered counts as one without a panel, until it does answer.
  Duration firstAnswer = std::chrono::milliseconds(400);
  /// How long a host that is about to show the menu waits for it to be brought up to date.
  Duration longestQuestion = std::chrono::milliseconds(200);
  /// How long to leave a bus alone that cannot be reached.
  Duration retryPeriod = std::chrono::seconds(10);
  /// How long an answer is waited for.
  Duration longestAnswer = std::chrono::seconds(20);
};

/// Needs no toolkit and no display: panels draw it. Trays of the old kind, which embed a window, are not served.
/// [main] throughout.
class LinuxStatusItem final : public StatusItem {
 public:
  LinuxStatusItem(Executor& main, LogSink& log, LinuxStatusItemOptions options = {});
  ~LinuxStatusItem() override;
  LinuxStatusItem(const LinuxStatusItem&) = delete;
  LinuxStatusItem& operator=(const LinuxStatusItem&) = delete;

  void onAvailabilityChanged(std::function<void(bool isAvailable)> callback) override;
  [[nodiscard]] bool isAvailable() const override;
  void show() override;
  void setMenu(std::vector<StatusMenuItem> menu) override;
  void setToolTip(std::string text) override;
  void onActivated(std::function<void(const StatusItemActivation& activation)> callback) override;
  void onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) override;
  void onMenuAboutToShow(std::function<void()> callback) override;
  void onScroll(std::function<void(int angleDelta)> callback) override;

 private:
  struct Told;

  std::shared_ptr<Told> told_;
  std::vector<StatusMenuItem> menu_;
  std::string toolTip_;
  std::unique_ptr<statusitem::ItemOnBus> item_;
};

}  // namespace quillmere
