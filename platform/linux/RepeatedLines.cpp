// A short list, looked through from its latest line on.
#include "platform/linux/RepeatedLines.h"

#include <algorithm>

namespace quillmere {

bool RepeatedLines::isNews(std::string_view category, std::string_view message, MonotonicTime now) {
  auto line = std::string(category) + '\n' + std::string(message);
  const std::lock_guard lock(mutex_);
  const auto known = std::ranges::find(seen_, line, &Seen::line);
  if (known == seen_.end()) {
    seen_.push_front({std::move(line), now});
    if (seen_.size() > most) seen_.pop_back();
    return true;
  }
  const bool isForgotten = now - known->at >= memory;
  known->at = now;
  seen_.splice(seen_.begin(), seen_, known);
  return isForgotten;
}

}  // namespace quillmere
