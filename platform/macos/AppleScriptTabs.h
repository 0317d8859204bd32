// Browsers' tabs by way of the system's scripts: the text is run as it is.
#pragma once

#include "platform/TabScripting.h"

namespace quillmere {

class AppleScriptTabs final : public TabScripting {
 public:
  std::unique_ptr<TabScript> compile(const TabRequest& request, std::string_view source) override;
};

}  // namespace quillmere
