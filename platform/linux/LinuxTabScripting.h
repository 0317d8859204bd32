// Browsers' tabs as their companions tell them: a script is not run here, what it asks is answered.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/BrowserCompanions.h"
#include "platform/TabScripting.h"
#include "platform/linux/ApplicationRegistry.h"
#include "runtime/Runtime.h"

namespace quillmere {

struct LinuxTabScriptingOptions {
  /// Where browsers' host programs find this one; absent means XDG_RUNTIME_DIR.
  std::optional<std::string> runtimeFolder;
};

/// A query is answered from what the companions told last, without a wait; a browser without a companion has no tabs.
/// An activation goes to the browser that had the window and the tab at the last query, and doesn't wait for it; a
/// browser without a companion is started. [any]
class LinuxTabScripting final : public TabScripting {
 public:
  LinuxTabScripting(const Runtime& runtime, std::shared_ptr<ApplicationRegistry> registry,
                    LinuxTabScriptingOptions options = {});
  ~LinuxTabScripting() override;
  LinuxTabScripting(const LinuxTabScripting&) = delete;
  LinuxTabScripting& operator=(const LinuxTabScripting&) = delete;

  [[nodiscard]] const ChangeSignal& changes() const override;
  std::unique_ptr<TabScript> compile(const TabRequest& request, std::string_view source) override;
  /// Who is connected here; may outlive this object.
  [[nodiscard]] std::unique_ptr<BrowserCompanions> companions();

 private:
  class Lines;
  class Companions;
  std::shared_ptr<Lines> lines_;
};

}  // namespace quillmere
