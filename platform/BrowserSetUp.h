// The browsers that could show their tabs in the mixer, and what each of them needs for it: to know the program that
// its companion speaks to.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillmere {

/// A browser that is on this machine.
struct InstalledBrowser {
  /// Short and fixed; BrowserCompanion names it in the same way.
  std::string key;
  /// As people know it.
  std::string name;
  /// Whether it knows the program that the companion speaks to.
  bool hasHost = false;
  /// Whether the system has told it, which a user can't take back.
  bool isSystems = false;

  friend bool operator==(const InstalledBrowser&, const InstalledBrowser&) = default;
};

/// [any but main]: files are read and written. One call at a time.
class BrowserSetUp {
 public:
  /// What went wrong, in words for the log; absent for success.
  using Failure = std::optional<std::string>;

  virtual ~BrowserSetUp() = default;
  /// Read from the system each time, in a fixed order.
  [[nodiscard]] virtual std::vector<InstalledBrowser> browsers() = 0;
  /// Makes the program known to a browser, for this user.
  virtual Failure install(const std::string& key) = 0;
  /// Takes that back; nothing to take back is a success.
  virtual Failure remove(const std::string& key) = 0;
  /// The folder that the companion is loaded from; empty where it is not known. [any]
  [[nodiscard]] virtual std::string companionFolder() const = 0;
};

}  // namespace quillmere
