// Media keys as the keyboard sends them.
#pragma once

#include "platform/MediaKeys.h"

namespace quillmere {

class MacMediaKeys final : public MediaKeys {
 public:
  /// A key can't say what it is meant for: `purpose` is for hosts that talk to players. [main]
  void press(std::int32_t key, mediakey::Purpose purpose) override;
};

}  // namespace quillmere
