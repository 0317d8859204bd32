// The browsers that could show their tabs, as a page shows them, and the way to set each of them up.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/BrowserSetUp.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"

namespace quillmere {

/// [main] throughout; browsers are looked for and changed on [background], one call at a time and in order.
class CompanionSetUp {
 public:
  /// `setUp` may be null: then there are no browsers. It and the runtime's services outlive this object and its work.
  CompanionSetUp(BrowserSetUp* setUp, const Runtime& runtime);
  ~CompanionSetUp();
  CompanionSetUp(const CompanionSetUp&) = delete;
  CompanionSetUp& operator=(const CompanionSetUp&) = delete;

  /// Empty until they have been looked for.
  [[nodiscard]] const Observable<std::vector<InstalledBrowser>>& browsers() const { return browsers_; }
  /// Looks for them again.
  void refresh();
  /// browsers() then says what has become of it; what has failed is logged.
  void install(const std::string& key);
  void remove(const std::string& key);
  [[nodiscard]] std::string companionFolder() const;

 private:
  class Worker;
  BrowserSetUp* setUp_;
  Runtime runtime_;
  Observable<std::vector<InstalledBrowser>> browsers_;
  std::shared_ptr<Worker> worker_;
};

}  // namespace quillmere
