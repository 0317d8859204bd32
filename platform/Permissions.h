// What the system lets this program do that a user has to agree to, as the system itself puts it.
#pragma once

#include <functional>
#include <string>

namespace quillmere {

/// Whether the program may read the system's focus or do-not-disturb state. The numbers are the platform's own.
enum class FocusAuthorization : int { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

/// [main] throughout. Nothing here waits: where the system has to be asked, the last answer is given, a new one is
/// fetched, and whoever observes hears of it.
class Permissions {
 public:
  virtual ~Permissions() = default;
  /// Whether the program may take part in the keyboard of the whole session.
  [[nodiscard]] virtual bool isProcessTrusted() = 0;
  /// Asks the user for that, where the system has a question for it.
  virtual void promptForTrust() = 0;
  /// May be a number that FocusAuthorization doesn't name.
  [[nodiscard]] virtual int focusAuthorization() = 0;
  /// Asks for it; `answered` is called once the system has answered, on any thread.
  virtual void requestFocusAuthorization(std::function<void()> answered) = 0;
  /// Opens the place in the system's settings where that is decided: "Privacy_Accessibility", "Privacy_FocusStatus".
  /// False where there is none.
  virtual bool openSettings(const std::string& anchor) = 0;
  /// Called from the main loop when an answer may differ from the last one that was given. One observer.
  virtual void onChanged(std::function<void()> callback) = 0;
};

}  // namespace quillmere
