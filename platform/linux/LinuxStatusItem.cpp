// The main thread's side of the icon in the panel: what is set goes to the host's loop, what happens there comes back.
#include "platform/linux/LinuxStatusItem.h"

#include <cstdlib>
#include <utility>

#include "statusitem/ItemOnBus.h"

namespace quillmere {

std::string currentDesktopOfEnvironment() {
  const auto* value = std::getenv("XDG_CURRENT_DESKTOP");
  return value != nullptr ? value : std::string();
}

/// What the program wants to hear of, and what it has been told. [main]
struct LinuxStatusItem::Told {
  std::function<void(bool)> availability;
  std::function<void(const StatusItemActivation&)> activated;
  std::function<void(int, const std::string&)> chosen;
  std::function<void()> aboutToShow;
  std::function<void(int)> scrolled;
  bool isAvailable = false;
  /// Null once the end has begun, which a callback may do.
  statusitem::ItemOnBus* item = nullptr;
};

LinuxStatusItem::LinuxStatusItem(Executor& main, LogSink& log, LinuxStatusItemOptions options)
    : told_(std::make_shared<Told>()) {
  const auto tell = [&main, weak = std::weak_ptr(told_)](std::function<void(Told&)> work) {
    main.post([weak, work = std::move(work)] {
      if (const auto told = weak.lock()) work(*told);
    });
  };
  statusitem::ItemEvents events;
  events.availabilityChanged = [tell](bool isAvailable) {
    tell([isAvailable](Told& told) {
      told.isAvailable = isAvailable;
      if (told.availability) told.availability(isAvailable);
    });
  };
  events.activated = [tell](const StatusItemActivation& activation) {
    tell([activation](Told& told) {
      if (told.activated) told.activated(activation);
    });
  };
  events.chosen = [tell](int id, const std::string& token) {
    tell([id, token](Told& told) {
      if (told.chosen) told.chosen(id, token);
    });
  };
  events.aboutToShow = [tell](int question) {
    tell([question](Told& told) {
      if (told.aboutToShow) told.aboutToShow();
      if (told.item != nullptr) told.item->answer(question);
    });
  };
  events.scrolled = [tell](int angleDelta) {
    tell([angleDelta](Told& told) {
      if (told.scrolled) told.scrolled(angleDelta);
    });
  };
  item_ = std::make_unique<statusitem::ItemOnBus>(std::move(events), log, std::move(options));
  told_->item = item_.get();
}

LinuxStatusItem::~LinuxStatusItem() { told_->item = nullptr; }

void LinuxStatusItem::onAvailabilityChanged(std::function<void(bool isAvailable)> callback) {
  told_->availability = std::move(callback);
}

bool LinuxStatusItem::isAvailable() const { return told_->isAvailable; }

void LinuxStatusItem::show() { item_->show(); }

void LinuxStatusItem::setMenu(std::vector<StatusMenuItem> menu) {
  if (menu == menu_) return;
  menu_ = menu;
  item_->setMenu(std::move(menu));
}

void LinuxStatusItem::setToolTip(std::string text) {
  if (text == toolTip_) return;
  toolTip_ = text;
  item_->setToolTip(std::move(text));
}

void LinuxStatusItem::onActivated(std::function<void(const StatusItemActivation& activation)> callback) {
  told_->activated = std::move(callback);
}

void LinuxStatusItem::onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) {
  told_->chosen = std::move(callback);
}

void LinuxStatusItem::onMenuAboutToShow(std::function<void()> callback) { told_->aboutToShow = std::move(callback); }

void LinuxStatusItem::onScroll(std::function<void(int angleDelta)> callback) { told_->scrolled = std::move(callback); }

}  // namespace quillmere
