// A desktop on a bus: its portal and its notifications, which behave as a test wants.
#pragma once

#include <gio/gio.h>

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "FilteredBus.h"

namespace quillmere::support {

class FakeDesktop {
 public:
  explicit FakeDesktop(const std::string& address);
  FakeDesktop(const FakeDesktop&) = delete;
  FakeDesktop& operator=(const FakeDesktop&) = delete;

  void comeAsPortal();
  void leaveAsPortal();
  void comeAsNotifications();
  /// Whether the portal hands out global shortcuts; not at first.
  void offerShortcuts(bool offers);
  /// Whether the notifications tell that they are silenced; they do at first.
  void tellInhibited(bool tells);
  /// Whoever asks the notifications is turned away by the bus.
  void forbid();
  /// What the portal answers to a wish to be started at login, instead of what was wished; and with which response.
  void setAutostart(std::optional<bool> answer, std::uint32_t response = 0);
  /// Questions are taken and never answered.
  void hang();
  /// Requests get handles of the portal's own choice, as they did once.
  void chooseHandles();
  /// The portal's settings are these: a value of type a{sa{sv}} as text.
  void setSettings(std::string text);
  /// Tells that a setting has changed; `value` as text.
  void changeSetting(const std::string& space, const std::string& key, const std::string& value);
  /// The portal has no dialogue for files.
  void refuseFiles();

  /// The user's answer to the open dialogue for a file.
  void answerFile(const std::optional<std::string>& uri, std::uint32_t cancelled = 1);
  [[nodiscard]] int dialogues() const;
  /// The arguments of the last dialogue and the last wish for the login, printed.
  [[nodiscard]] std::string lastFileQuestion() const;
  [[nodiscard]] std::string lastAutostart() const;

 private:
  GDBusMessage* filter(GDBusMessage* message);
  GDBusMessage* answerTo(GDBusMessage* message, const std::string& interface, const std::string& member);
  std::string handleFor(GDBusMessage* message);
  void emitResponse(const std::string& handle, std::uint32_t response, GVariant* results);
  void name(const char* method, GVariant* arguments);

  mutable std::mutex mutex_;
  bool offersShortcuts_ = false;
  bool tellsInhibited_ = true;
  bool forbids_ = false;
  bool hangs_ = false;
  bool choosesHandles_ = false;
  bool refusesFiles_ = false;
  std::optional<bool> autostart_;
  std::uint32_t autostartResponse_ = 0;
  std::string fileHandle_;
  int dialogues_ = 0;
  std::string lastFileQuestion_;
  std::string lastAutostart_;
  std::string settings_;
  /// Declared last: once it has gone, nobody is in the filter.
  FilteredBus bus_;
};

}  // namespace quillmere::support
