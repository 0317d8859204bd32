// The desktop's wishes on Linux: the portal's settings, with their changes, and the files of toolkits where no portal
// tells of them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/DesktopLook.h"
#include "runtime/Runtime.h"

namespace quillmere {

namespace portal {
class Portal;
}

/// What is absent is the user's own.
struct LinuxDesktopLookOptions {
  std::optional<std::string> configHome;
  /// What the session's desktop is called.
  std::optional<std::vector<std::string>> desktops;
};

/// Something is wished where any source wishes it: nobody sets what helps them by mistake, and many desktops tell the
/// default of another's setting. The files are read once. [main]
class LinuxDesktopLook final : public DesktopLook {
 public:
  LinuxDesktopLook(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                   LinuxDesktopLookOptions options = {});
  ~LinuxDesktopLook() override;

  /// The first call begins to look; the disk is read on [background], the portal asked on [host].
  void onWished(std::function<void(const LookWishes&)> callback) override;

 private:
  struct State;
  void look();

  std::shared_ptr<portal::Portal> portal_;
  Runtime runtime_;
  LinuxDesktopLookOptions options_;
  std::shared_ptr<State> state_;
  bool isLooking_ = false;
};

}  // namespace quillmere
