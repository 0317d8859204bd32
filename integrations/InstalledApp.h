// One application as pickers list it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace quillmere {

/// Equality is field by field.
struct InstalledApp {
  /// The record's identity in lists.
  std::string bundleID;
  /// As people know it.
  std::string name;
  /// Where the application is installed; empty when unknown.
  std::string bundlePath;
  /// At the time of the listing.
  bool isRunning = false;

  friend bool operator==(const InstalledApp&, const InstalledApp&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::InstalledApp> {
  std::size_t operator()(const quillmere::InstalledApp& app) const noexcept;
};
