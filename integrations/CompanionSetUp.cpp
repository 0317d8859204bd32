// Between a page and the files of browsers.
#include "integrations/CompanionSetUp.h"

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/Threads.h"

namespace quillmere {

/// Outlives its owner as long as its work does.
class CompanionSetUp::Worker : public std::enable_shared_from_this<Worker> {
 public:
  using Change = std::function<BrowserSetUp::Failure(BrowserSetUp&)>;

  Worker(CompanionSetUp& owner, BrowserSetUp& setUp, const Runtime& runtime)
      : owner_(&owner),
        setUp_(setUp),
        main_(runtime.main),
        background_(runtime.background),
        log_(runtime.log, "CompanionSetUp") {}

  /// Makes the change, if any, and looks at what there is then. [main]
  void ask(Change change) {
    {
      const std::scoped_lock lock(changesMutex_);
      changes_.push_back(std::move(change));
    }
    background_.post([self = shared_from_this()] { self->work(); });
  }
  /// [main]
  void letGo() { owner_ = nullptr; }

 private:
  void work() {
    const std::scoped_lock lock(workMutex_);
    const auto change = takeChange();
    if (change) {
      if (const auto failure = change(setUp_)) log_.standard("a browser could not be set up: " + *failure);
    }
    main_.post([self = shared_from_this(), browsers = setUp_.browsers()]() mutable {
      if (self->owner_ != nullptr) self->owner_->browsers_.set(std::move(browsers));
    });
  }

  /// In their order, whichever thread comes first.
  Change takeChange() {
    const std::scoped_lock lock(changesMutex_);
    auto change = std::move(changes_.front());
    changes_.pop_front();
    return change;
  }

  CompanionSetUp* owner_;
  BrowserSetUp& setUp_;
  Executor& main_;
  Executor& background_;
  const Logger log_;
  std::mutex workMutex_;
  std::mutex changesMutex_;
  std::deque<Change> changes_;
};

CompanionSetUp::CompanionSetUp(BrowserSetUp* setUp, const Runtime& runtime)
    : setUp_(setUp),
      runtime_(runtime),
      worker_(setUp != nullptr ? std::make_shared<Worker>(*this, *setUp, runtime) : nullptr) {}

CompanionSetUp::~CompanionSetUp() {
  if (worker_) worker_->letGo();
}

void CompanionSetUp::refresh() {
  QUILLMERE_CHECK_ON(runtime_.main, "browsers are looked for off the main thread");
  if (worker_) worker_->ask({});
}

void CompanionSetUp::install(const std::string& key) {
  QUILLMERE_CHECK_ON(runtime_.main, "a browser is set up off the main thread");
  if (worker_) worker_->ask([key](BrowserSetUp& setUp) { return setUp.install(key); });
}

void CompanionSetUp::remove(const std::string& key) {
  QUILLMERE_CHECK_ON(runtime_.main, "a browser is set up off the main thread");
  if (worker_) worker_->ask([key](BrowserSetUp& setUp) { return setUp.remove(key); });
}

std::string CompanionSetUp::companionFolder() const { return setUp_ != nullptr ? setUp_->companionFolder() : ""; }

}  // namespace quillmere
