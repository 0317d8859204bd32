// The user's defaults database of this application.
#pragma once

#include "platform/UserDefaults.h"

namespace quillmere {

class MacUserDefaults final : public UserDefaults {
 public:
  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;
};

}  // namespace quillmere
