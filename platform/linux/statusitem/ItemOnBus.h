// The status item's life on the bus: finds the watcher of panels, registers with each one that comes, serves the item
// and its menu. All on the host's loop, with a copy of its own of what is shown.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "../bus/BusConnection.h"
#include "BusMenu.h"
#include "ColorScheme.h"
#include "core/PanelInk.h"
#include "platform/StatusItem.h"
#include "platform/linux/LinuxStatusItem.h"
#include "runtime/Logger.h"

namespace quillmere::statusitem {

/// Called on [host].
struct ItemEvents {
  std::function<void(bool isAvailable)> availabilityChanged;
  std::function<void(const StatusItemActivation& activation)> activated;
  std::function<void(int id, const std::string& activationToken)> chosen;
  /// The host waits for answer(question), though not for long.
  std::function<void(int question)> aboutToShow;
  std::function<void(int angleDelta)> scrolled;
};

/// Called on [main], as the item is; answers come and go on [host].
class ItemOnBus {
 public:
  ItemOnBus(ItemEvents events, LogSink& log, LinuxStatusItemOptions options);
  /// Takes the icon out of the panel; no event comes afterwards.
  ~ItemOnBus();
  ItemOnBus(const ItemOnBus&) = delete;
  ItemOnBus& operator=(const ItemOnBus&) = delete;

  /// Puts the icon into the panel, once. [any]
  void show();
  /// [any]
  void setMenu(std::vector<StatusMenuItem> menu);
  /// [any]
  void setToolTip(std::string text);
  /// The menu is as it should be shown. [any]
  void answer(int question);

 private:
  // Everything below: [host].
  using Answer = std::function<void(bool needsUpdate)>;

  void connected();
  void disconnected(const std::string& reason);
  void tellAvailability();

  void publish();
  void takeName();
  void setWatcher(const std::string& owner);
  void askForHost();
  void enrol();

  void setPortal(const std::string& owner);
  void setPreference(std::optional<bool> preference);

  GVariant* itemProperty(const std::string& name) const;
  GVariant* menuProperty(const std::string& name) const;
  void itemCalled(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
  void menuCalled(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
  /// `id` is of an entry that there is.
  void menuEvent(int id, const std::string& event);
  void ask(Answer answer);
  std::string takeToken();

  void emit(const char* path, const char* interface, const char* signal, GVariant* body);
  void emitMenuChange(const MenuChange& change);

  const ItemEvents events_;
  Logger log_;
  [[nodiscard]] Ink ink() const { return panelInk(preference_, options_.currentDesktop); }

  const LinuxStatusItemOptions options_;

  /// Nothing that comes from now on will be answered by anybody.
  bool isOver_ = false;
  bool isShown_ = false;
  /// The objects are on the bus, and service_ is what they are known by.
  bool isPublished_ = false;
  std::string service_;
  /// The owner's name on the bus; empty while there is none.
  std::string watcher_;
  bool hasHost_ = false;
  bool isEnrolled_ = false;
  std::optional<bool> toldAvailability_;
  bool missingIsReported_ = false;

  std::string portal_;
  std::optional<bool> preference_;

  BusMenu menu_;
  std::string toolTip_ = "quillmere";
  std::string activationToken_;
  struct Question {
    std::uint32_t revision = 0;
    Answer answer;
  };
  std::map<int, Question> questions_;
  int lastQuestion_ = 0;

  /// Last, so that it begins when all is there and ends before any of it goes.
  bus::BusConnection bus_;
};

}  // namespace quillmere::statusitem
