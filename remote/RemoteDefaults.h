// The views' settings in another process: read from what the mixer told at the start, written through to it.
#pragma once

#include <map>
#include <string>

#include "platform/UserDefaults.h"
#include "remote/SendMessage.h"
#include "runtime/HomeThread.h"

namespace quillmere {

/// [main] throughout. Holds switches only; a value of another type is ignored.
class RemoteDefaults final : public UserDefaults {
 public:
  explicit RemoteDefaults(SendMessage send);

  /// Reads the settings out of the mixer's first message.
  void take(const nlohmann::json& message);

  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

 private:
  HomeThread home_;
  SendMessage send_;
  std::map<std::string, bool, std::less<>> values_;
};

}  // namespace quillmere
