// The mixer's end of the lines to the browsers' host programs: a socket in the user's runtime folder, and what each
// host has told.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {
class HostLoop;
}

namespace quillmere::tabs {

/// Which browser a host belongs to.
struct BrowserFacts {
  /// The application's identifier, as for its sound.
  std::string identifier;
  /// The file that runs, without its folder.
  std::string program;

  friend bool operator==(const BrowserFacts&, const BrowserFacts&) = default;
};

/// A companion that is connected.
struct ConnectedCompanion {
  BrowserFacts browser;
  std::string hostVersion;
  std::string companionVersion;

  friend bool operator==(const ConnectedCompanion&, const ConnectedCompanion&) = default;
};

struct HostListenerOptions {
  /// The user's runtime folder; the socket is in a folder of its own below it.
  std::string runtimeFolder;
  /// Finds the browser by its host's process id, for which the kernel vouches. Called on [host], where nothing may
  /// wait; the answer may come later, from any thread. Until then the host is not heard.
  std::function<void(std::int32_t hostPID, std::function<void(BrowserFacts browser)> found)> identify;
  /// This program's version.
  std::string version;
  /// Whose processes may connect; absent means this process's user.
  std::optional<std::uint32_t> userID = {};
  /// How long a host may take to say who it is, and for one message once it has begun it.
  Duration patience = std::chrono::seconds(10);
  /// More hosts than these are turned away.
  std::size_t mostHosts = 32;
  /// Called when a companion came, went or said who it is. [host]
  std::function<void()> changed = {};
  /// Called when a query may have another answer. On the listener's thread.
  std::function<void()> told = {};
};

/// [any]. On the host's loop; the destructor waits for what is under way there.
/// Whoever says what can't be understood, or nothing, is dropped with one line in the log; the others don't notice.
class HostListener {
 public:
  HostListener(HostListenerOptions options, Clocks& clocks, LogSink& log);
  ~HostListener();
  HostListener(const HostListener&) = delete;
  HostListener& operator=(const HostListener&) = delete;

  /// All tabs of one identifier's browsers, as BrowserTabMonitor reads them: hosts in the order in which they came,
  /// their windows numbered through. Empty where none is connected. Its numbers hold until the next query.
  [[nodiscard]] std::string query(const std::string& identifier);

  enum class Activation { asked, nobodyThere };
  /// Asks the browser that had this window and tab at the last query to bring them to the front. Of a window or a tab
  /// that there was not, the browser or the window alone.
  Activation activate(const std::string& identifier, std::int64_t window, std::int64_t tab);

  [[nodiscard]] std::vector<ConnectedCompanion> companions() const;

 private:
  class Core;
  const std::shared_ptr<HostLoop> loop_;
  const std::shared_ptr<Core> core_;
};

}  // namespace quillmere::tabs
