// Notices when the default output leaves a personal device, and when devices come and go. It only reports.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/AudioHardware.h"
#include "runtime/Executor.h"

namespace quillmere {

/// [main] throughout. Listeners are never removed; those of a destroyed monitor do nothing.
class HeadphoneMonitor {
 public:
  /// Both outlive this.
  HeadphoneMonitor(AudioHardware& hardware, Executor& main);
  ~HeadphoneMonitor();
  HeadphoneMonitor(const HeadphoneMonitor&) = delete;
  HeadphoneMonitor& operator=(const HeadphoneMonitor&) = delete;

  /// Takes in what is there and installs the listeners; a second call does nothing.
  void start();

  /// Set before this program changes the default output itself: the next change is then not reported.
  bool suppressNext = false;
  /// The default output went from a personal device to another kind; the old device's UID.
  std::function<void(const std::optional<std::string>& uid)> onDisconnect;
  /// A device of any kind is no longer listed.
  std::function<void(const std::string& uid)> onDeviceRemoved;
  /// A device of any kind is newly listed.
  std::function<void(const std::string& uid)> onDeviceAdded;

  /// Whether a transport type is one that people wear or carry.
  [[nodiscard]] static bool isPersonal(std::uint32_t transportType);

 private:
  void handleDefaultDeviceChange();
  void handleDeviceListChange();
  [[nodiscard]] std::set<std::string> currentDeviceUIDs() const;
  [[nodiscard]] PropertyListener makeListener(void (HeadphoneMonitor::*handler)());

  AudioHardware& hardware_;
  [[maybe_unused]] Executor& main_;
  std::uint32_t lastTransportType_ = 0;
  std::optional<std::string> lastDefaultUID_;
  std::set<std::string> knownDeviceUIDs_;
  bool listenerInstalled_ = false;
  PropertyListener defaultListenerBlock_;
  PropertyListener deviceListListenerBlock_;
  /// What listeners hold weakly: gone with this object.
  std::shared_ptr<HeadphoneMonitor*> self_;
};

}  // namespace quillmere
