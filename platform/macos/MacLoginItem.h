// The login item of this program's bundle, kept by the system's service manager.
#pragma once

#include "platform/LoginItem.h"

namespace quillmere {

/// [any but main], as the port says: the service manager is another process.
class MacLoginItem final : public LoginItem {
 public:
  Failure registerItem() override;
  Failure unregisterItem() override;
  [[nodiscard]] LoginItemStatus status() override;
};

}  // namespace quillmere
