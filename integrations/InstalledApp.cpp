// Hashing of a listed application.
#include "integrations/InstalledApp.h"

#include <string_view>

std::size_t std::hash<quillmere::InstalledApp>::operator()(const quillmere::InstalledApp& app) const noexcept {
  // The order of the fields counts: a name is not a path.
  std::size_t value = 0;
  const auto feed = [&value](std::size_t part) { value = value * 31 + part; };
  feed(std::hash<std::string_view>{}(app.bundleID));
  feed(std::hash<std::string_view>{}(app.name));
  feed(std::hash<std::string_view>{}(app.bundlePath));
  feed(app.isRunning ? 1 : 0);
  return value;
}
