// Brings one tab of one browser to the front.
#pragma once

#include <memory>
#include <string>

#include "integrations/BrowserTab.h"
#include "platform/TabScripting.h"
#include "runtime/Logger.h"
#include "runtime/OrderedBackground.h"
#include "runtime/Runtime.h"

namespace quillmere {

class BrowserTabActivator {
 public:
  /// Both outlive whatever is still under way when the activator has gone.
  BrowserTabActivator(TabScripting& scripting, const Runtime& runtime);

  /// Returns at once; the browser is spoken to on [background]. The tab is looked for where it stood at the last poll.
  /// Nobody learns how it went but the log. [any]
  void activate(const std::string& bundleID, const BrowserTab& tab) const;

 private:
  TabScripting& scripting_;
  Logger log_;
  /// One after the other: browsers that are slow to answer keep one thread of the pool, however often somebody clicks.
  std::shared_ptr<OrderedBackground> background_;
};

}  // namespace quillmere
