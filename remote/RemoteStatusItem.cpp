// The menu down, clicks up.
#include "remote/RemoteStatusItem.h"

#include <exception>
#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "wire/Messages.h"
#include "wire/StatusItemMessages.h"

namespace quillmere {

using nlohmann::json;

RemoteStatusItem::RemoteStatusItem(LogSink& log, SendMessage send) : log_(log), send_(std::move(send)) {}

void RemoteStatusItem::connected() {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  isConnected_ = true;
  sendToolTip();
  sendMenu();
  if (isShown_) send_({{wire::type, wire::statusItemShow}});
}

void RemoteStatusItem::disconnected() {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  isConnected_ = false;
  setAvailable(false);
}

bool RemoteStatusItem::take(const json& message) {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  const auto type = messageType(message);
  try {
    if (type == wire::statusItemAvailable) {
      setAvailable(readAs<bool>(message.at("isAvailable")));
    } else if (type == wire::statusItemActivated) {
      if (activated_) activated_({});
    } else if (type == wire::statusItemChosen) {
      const auto id = readAs<int>(message.at("id"));
      if (chosen_) chosen_(id, {});
    } else if (type == wire::statusItemAboutToShow) {
      if (aboutToShow_) aboutToShow_();
    } else if (type == wire::statusItemScroll) {
      const auto delta = readAs<int>(message.at("angleDelta"));
      if (scroll_) scroll_(delta);
    } else {
      return false;
    }
  } catch (const std::exception& error) {
    Logger(log_, "RemoteStatusItem").error("ignored \"" + type + "\": " + error.what());
  }
  return true;
}

void RemoteStatusItem::setAvailable(bool isAvailable) {
  if (isAvailable_ == isAvailable) return;
  isAvailable_ = isAvailable;
  if (availability_) availability_(isAvailable);
}

void RemoteStatusItem::sendMenu() {
  if (isConnected_) send_({{wire::type, wire::statusItemMenu}, {"items", menu_}});
}

void RemoteStatusItem::sendToolTip() {
  if (isConnected_) send_({{wire::type, wire::statusItemToolTip}, {"text", toolTip_}});
}

void RemoteStatusItem::onAvailabilityChanged(std::function<void(bool)> callback) {
  availability_ = std::move(callback);
}

void RemoteStatusItem::show() {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  if (std::exchange(isShown_, true)) return;
  if (isConnected_) send_({{wire::type, wire::statusItemShow}});
}

void RemoteStatusItem::setMenu(std::vector<StatusMenuItem> menu) {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  if (menu == menu_) return;
  menu_ = std::move(menu);
  sendMenu();
}

void RemoteStatusItem::setToolTip(std::string text) {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  toolTip_ = std::move(text);
  sendToolTip();
}

void RemoteStatusItem::onActivated(std::function<void(const StatusItemActivation&)> callback) {
  activated_ = std::move(callback);
}

void RemoteStatusItem::onMenuItemChosen(std::function<void(int, const std::string&)> callback) {
  chosen_ = std::move(callback);
}

void RemoteStatusItem::onMenuAboutToShow(std::function<void()> callback) { aboutToShow_ = std::move(callback); }

void RemoteStatusItem::onScroll(std::function<void(int)> callback) { scroll_ = std::move(callback); }

StatusItemHost::StatusItemHost(StatusItem& item, LogSink& log, SendMessage send)
    : item_(item), log_(log), send_(std::move(send)) {
  item_.onAvailabilityChanged(
      [this](bool isAvailable) { send_({{wire::type, wire::statusItemAvailable}, {"isAvailable", isAvailable}}); });
  item_.onActivated([this](const StatusItemActivation&) { send_({{wire::type, wire::statusItemActivated}}); });
  item_.onMenuItemChosen(
      [this](int id, const std::string&) { send_({{wire::type, wire::statusItemChosen}, {"id", id}}); });
  item_.onMenuAboutToShow([this] { send_({{wire::type, wire::statusItemAboutToShow}}); });
  item_.onScroll([this](int angleDelta) { send_({{wire::type, wire::statusItemScroll}, {"angleDelta", angleDelta}}); });
}

bool StatusItemHost::take(const json& message) {
  QUILLMERE_CHECK_ON(home_, "a remote status item is touched off the main thread");
  const auto type = messageType(message);
  try {
    if (type == wire::statusItemShow) {
      item_.show();
    } else if (type == wire::statusItemMenu) {
      item_.setMenu(message.at("items").get<std::vector<StatusMenuItem>>());
    } else if (type == wire::statusItemToolTip) {
      item_.setToolTip(message.at("text").get<std::string>());
    } else {
      return false;
    }
  } catch (const std::exception& error) {
    Logger(log_, "StatusItemHost").error("ignored \"" + type + "\": " + error.what());
  }
  return true;
}

}  // namespace quillmere
