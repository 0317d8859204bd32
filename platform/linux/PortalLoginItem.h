// The login item of a program in a sandbox: the desktop's portal keeps it.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/LoginItem.h"

namespace quillmere {

namespace portal {
class Portal;
}

/// The portal can be told to start the program, and says what it has done; it cannot be asked. So the status is what it
/// said last, and before that what the host's autostart folder says where the sandbox may look there. [any but main]
class PortalLoginItem final : public LoginItem {
 public:
  /// @param outside   the login item as the host has it, for reading; may be null
  /// @param patience  how long a user may think about the portal's question
  PortalLoginItem(std::shared_ptr<portal::Portal> portal, std::unique_ptr<LoginItem> outside,
                  std::chrono::milliseconds patience = std::chrono::seconds(60));
  ~PortalLoginItem() override;

  Failure registerItem() override { return ask(true); }
  Failure unregisterItem() override { return ask(false); }
  [[nodiscard]] LoginItemStatus status() override;

 private:
  Failure ask(bool starts);

  std::shared_ptr<portal::Portal> portal_;
  std::unique_ptr<LoginItem> outside_;
  std::chrono::milliseconds patience_;
  std::optional<bool> told_;
};

}  // namespace quillmere
