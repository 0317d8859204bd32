// The program's windows and its standing, as the application object of a Mac knows them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/WindowSystem.h"

namespace quillmere {

/// What makes and closes windows is the toolkit's. [main]
struct MacWindowMaker {
  std::function<void(const std::string& identifier)> open;
  std::function<void(const std::string& identifier)> close;
};

/// sRGB components, each 0 to 1.
struct MacColour {
  double red = 0;
  double green = 0;
  double blue = 0;
};

/// [main] throughout. A window counts by the identifier that setIdentifier() has given it.
class MacWindowSystem final : public WindowSystem {
 public:
  explicit MacWindowSystem(MacWindowMaker maker);
  ~MacWindowSystem() override;
  MacWindowSystem(const MacWindowSystem&) = delete;
  MacWindowSystem& operator=(const MacWindowSystem&) = delete;

  /// `view`: the NSView* that fills the window; it is there once the toolkit has made the window.
  static void setIdentifier(void* view, const std::string& identifier);
  /// The bar keeps its buttons and loses its title and its own look: it has the window's ground.
  static void hideTitleBar(void* view, const MacColour& ground);

  [[nodiscard]] std::vector<WindowInfo> windows() const override;
  void open(const std::string& identifier) override;
  void close(const std::string& identifier) override;
  void orderFront(const std::string& identifier) override;
  [[nodiscard]] ActivationPolicy activationPolicy() const override;
  void setActivationPolicy(ActivationPolicy policy) override;
  void activate() override;
  /// Nobody asks for a reason here.
  void showAboutPanel(const std::string& activationToken) override;
  /// The application object ends the toolkit's loop.
  void terminate() override;
  void onWindowBecameKey(WindowObserver observer) override;
  void onWindowWillClose(WindowObserver observer) override;

 private:
  struct Watch;
  MacWindowMaker maker_;
  std::unique_ptr<Watch> watch_;
};

}  // namespace quillmere
