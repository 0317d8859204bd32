// What the machine does with a browser's tabs: a script is made ready and run. A host that has a scripting bridge runs
// the text; one that speaks to the browser in another way carries out the request that the text stands for.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "runtime/ChangeSignal.h"

namespace quillmere {

/// What a script asks of which browser.
struct TabRequest {
  enum class Kind {
    /// The text of all tabs, in the form that BrowserTabMonitor reads.
    query,
    /// Brings the browser, one window and one of its tabs to the front.
    activate
  };
  Kind kind = Kind::query;
  /// The browser's identifier as in AudioApp.
  std::string bundleID;
  /// Positions at the time of the last query, from 1; only of `activate`.
  std::int64_t window = 1;
  std::int64_t tab = 1;
};

/// How a script ended: with a text (or none), or with an error.
struct TabScriptResult {
  struct Error {
    /// Absent where the bridge gave none, or something that is no text.
    std::optional<std::string> message;
    /// The whole error in words, for when it has no message.
    std::string description;
    std::int64_t number = 0;
  };
  std::optional<std::string> text;
  std::optional<Error> error;
};

/// A script made ready to run.
class TabScript {
 public:
  virtual ~TabScript() = default;
  /// Runs it to its end. A query answers at once from what the host knows where the host can. [main] for a query,
  /// [background] for an activation, which may wait for the browser.
  virtual TabScriptResult execute() = 0;
};

class TabScripting {
 public:
  virtual ~TabScripting() = default;
  /// Raised after a query of any browser may have another answer than before. Of a bridge that doesn't know: absent.
  /// [any]
  [[nodiscard]] virtual const ChangeSignal& changes() const { return ChangeSignal::absent(); }
  /// Makes `source` ready; null where that fails. `request` is what the source stands for. [any]
  virtual std::unique_ptr<TabScript> compile(const TabRequest& request, std::string_view source) = 0;
};

}  // namespace quillmere
