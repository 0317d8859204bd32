// An icon in the panel that another process draws: both ends.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/StatusItem.h"
#include "remote/SendMessage.h"
#include "runtime/HomeThread.h"
#include "runtime/Logger.h"

namespace quillmere {

/// The end of those who use the icon. The other process may come later, and go: what was set is sent to each that
/// comes. Where a click was, and what token came with it, is not told: the windows are in the process that draws the
/// icon. [main] throughout.
class RemoteStatusItem final : public StatusItem {
 public:
  RemoteStatusItem(LogSink& log, SendMessage send);

  /// A process that draws the icon is there, and knows nothing yet.
  void connected();
  /// It is gone.
  void disconnected();
  /// True if the message was for it; what can't be read is logged and ignored.
  bool take(const nlohmann::json& message);

  void onAvailabilityChanged(std::function<void(bool isAvailable)> callback) override;
  [[nodiscard]] bool isAvailable() const override { return isAvailable_.value_or(false); }
  void show() override;
  void setMenu(std::vector<StatusMenuItem> menu) override;
  void setToolTip(std::string text) override;
  void onActivated(std::function<void(const StatusItemActivation& activation)> callback) override;
  void onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) override;
  void onMenuAboutToShow(std::function<void()> callback) override;
  void onScroll(std::function<void(int angleDelta)> callback) override;

 private:
  void setAvailable(bool isAvailable);
  void sendMenu();
  void sendToolTip();

  HomeThread home_;
  LogSink& log_;
  SendMessage send_;
  bool isConnected_ = false;
  bool isShown_ = false;
  std::optional<bool> isAvailable_;
  std::vector<StatusMenuItem> menu_;
  std::string toolTip_;
  std::function<void(bool)> availability_;
  std::function<void(const StatusItemActivation&)> activated_;
  std::function<void(int, const std::string&)> chosen_;
  std::function<void()> aboutToShow_;
  std::function<void(int)> scroll_;
};

/// The end of the process that draws it. [main]
class StatusItemHost {
 public:
  /// `item` outlives it.
  StatusItemHost(StatusItem& item, LogSink& log, SendMessage send);
  /// True if the message was for it; what can't be read is logged and ignored.
  bool take(const nlohmann::json& message);

 private:
  HomeThread home_;
  StatusItem& item_;
  LogSink& log_;
  SendMessage send_;
};

}  // namespace quillmere
