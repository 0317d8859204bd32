// Browsers whose tabs a test writes down. Any single call can be made to fail; what is run is recorded.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/TabScripting.h"

namespace quillmere {

/// [any]
class MemoryTabScripting final : public TabScripting {
 public:
  /// Which calls a failure is for. Absent fields fit any call.
  struct Match {
    std::optional<TabRequest::Kind> kind;
    std::optional<std::string> bundleID;
  };
  /// A script as it was handed over.
  struct Script {
    TabRequest request;
    std::string source;
  };

  MemoryTabScripting();
  ~MemoryTabScripting() override;
  /// False: nobody is told that anything has changed.
  void setTellsChanges(bool tells);
  [[nodiscard]] const ChangeSignal& changes() const override;
  std::unique_ptr<TabScript> compile(const TabRequest& request, std::string_view source) override;

  /// What a query of this browser gives from now on: a text, at first the empty one, or none.
  void setText(const std::string& bundleID, std::optional<std::string> text);
  /// Lets `count` calls of compile that fit fail, after `skip` that still succeed.
  void failToCompile(Match match, int count = 1, int skip = 0);
  /// The same for runs, which end with `error`.
  void failToExecute(Match match, TabScriptResult::Error error, int count = 1, int skip = 0);

  /// In the order of the calls, those that failed among them.
  [[nodiscard]] std::vector<Script> compiled() const;
  [[nodiscard]] std::vector<Script> executed() const;
  /// What was executed to bring a tab to the front.
  [[nodiscard]] std::vector<Script> activations() const;
  void clearRecords();

 private:
  struct State;
  struct Made;

  /// Scripts may be run when this has gone.
  std::shared_ptr<State> state_;
};

}  // namespace quillmere
