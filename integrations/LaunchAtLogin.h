// Whether the program starts with the session, as a switch shows it. Nothing of it is stored here.
#pragma once

#include <memory>

#include "platform/LoginItem.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// [main] throughout; the system is read and written on [background], one call at a time.
class LaunchAtLogin {
 public:
  /// Begins to read the status. The runtime's services outlive this object; `item` outlives the background work too.
  LaunchAtLogin(LoginItem& item, const Runtime& runtime);
  ~LaunchAtLogin();
  LaunchAtLogin(const LaunchAtLogin&) = delete;
  LaunchAtLogin& operator=(const LaunchAtLogin&) = delete;

  /// True only for the status `enabled`; false until it has been read.
  [[nodiscard]] const Observable<bool>& isOn() const { return isOn_; }
  /// The switch was flipped: isOn() follows at once, and is what the system says as soon as that is known. A switch
  /// bound to it so snaps back after a change that failed, which is logged and shown nowhere. Of wishes that come
  /// faster than the system takes them, the last one counts.
  void setEnabled(bool on);
  /// Reads the status again; to be called whenever the switch comes on screen.
  void refresh();

 private:
  class Worker;
  Runtime runtime_;
  Observable<bool> isOn_{false};
  std::shared_ptr<Worker> worker_;
};

}  // namespace quillmere
