// The windows of this program and its standing on the desktop: visibility, activation, the end.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmere {

/// Regular: the program shows itself where running applications are listed. Accessory: it does not.
enum class ActivationPolicy { regular, accessory };

struct WindowInfo {
  /// Empty for a window that has none.
  std::string identifier;
  bool isVisible = false;

  friend bool operator==(const WindowInfo&, const WindowInfo&) = default;
};

/// [main] throughout.
class WindowSystem {
 public:
  using WindowObserver = std::function<void(const std::string& identifier)>;

  virtual ~WindowSystem() = default;
  [[nodiscard]] virtual std::vector<WindowInfo> windows() const = 0;
  /// Whether a window of this identifier can be opened.
  [[nodiscard]] virtual bool canOpen(const std::string& identifier) const = 0;
  /// Opens the window, or shows it where it is already; unknown identifiers are ignored.
  virtual void open(const std::string& identifier) = 0;
  /// Closes the window; one that does not exist is ignored.
  virtual void close(const std::string& identifier) = 0;
  /// Makes the window key and brings it to the front; one that does not exist is ignored.
  virtual void orderFront(const std::string& identifier) = 0;
  [[nodiscard]] virtual ActivationPolicy activationPolicy() const = 0;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  /// Brings the program to the front, ignoring others.
  virtual void activate() = 0;
  /// `activationToken`: what lets it come to the front on desktops that ask for a reason, or empty.
  virtual void showAboutPanel(const std::string& activationToken) = 0;
  /// Ends the program from its main loop, with exit code 0.
  virtual void terminate() = 0;
  /// Called after a window has become key, with its identifier.
  virtual void onWindowBecameKey(WindowObserver observer) = 0;
  /// Called while a window is about to close, with its identifier; it still counts as visible.
  virtual void onWindowWillClose(WindowObserver observer) = 0;
};

}  // namespace quillmere
