// A sound player that only remembers what was asked of it.
// It knows the same names as every host.
#pragma once

#include <string>
#include <vector>

#include "platform/SoundPlayer.h"

namespace quillmere {

/// [main]
class MemorySoundPlayer final : public SoundPlayer {
 public:
  bool play(std::string_view name) override {
    if (name != "Glass" && name != "Hero") return false;
    played_.emplace_back(name);
    return true;
  }

  /// The names that were played, in order; unknown ones are not among them.
  [[nodiscard]] const std::vector<std::string>& played() const { return played_; }
  void clear() { played_.clear(); }

 private:
  std::vector<std::string> played_;
};

}  // namespace quillmere
