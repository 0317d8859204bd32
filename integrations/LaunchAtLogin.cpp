// The switch between the user and the system's service.
#include "integrations/LaunchAtLogin.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/Threads.h"

namespace quillmere {

/// Outlives the switch as long as its work does.
class LaunchAtLogin::Worker : public std::enable_shared_from_this<Worker> {
 public:
  Worker(LaunchAtLogin& owner, LoginItem& item, const Runtime& runtime)
      : owner_(&owner),
        item_(item),
        main_(runtime.main),
        background_(runtime.background),
        log_(runtime.log, "LaunchAtLogin") {}

  /// Carries out the wish, if any, and reads what has become of it. [main]
  void ask(std::optional<bool> wish) {
    if (wish) {
      const std::scoped_lock lock(wishMutex_);
      wish_ = wish;
    }
    background_.post([self = shared_from_this(), number = ++asked_] { self->work(number); });
  }
  /// [main]
  void letGo() { owner_ = nullptr; }

 private:
  void work(std::uint64_t number) {
    bool isOn = false;
    {
      const std::scoped_lock lock(workMutex_);
      if (const auto wish = takeWish()) {
        const auto failure = *wish ? item_.registerItem() : item_.unregisterItem();
        if (failure) log_.standard("LaunchAtLogin toggle failed: " + *failure);
      }
      isOn = item_.status() == LoginItemStatus::enabled;
    }
    main_.post([self = shared_from_this(), isOn, number] {
      // While a later question is on its way the switch shows what was wished, not the past.
      if (self->owner_ != nullptr && number == self->asked_) self->owner_->isOn_.set(isOn);
    });
  }

  std::optional<bool> takeWish() {
    const std::scoped_lock lock(wishMutex_);
    return std::exchange(wish_, std::nullopt);
  }

  LaunchAtLogin* owner_;
  LoginItem& item_;
  Executor& main_;
  Executor& background_;
  Logger log_;
  /// [main]
  std::uint64_t asked_ = 0;
  std::mutex workMutex_;
  std::mutex wishMutex_;
  std::optional<bool> wish_;
};

LaunchAtLogin::LaunchAtLogin(LoginItem& item, const Runtime& runtime)
    : runtime_(runtime), worker_(std::make_shared<Worker>(*this, item, runtime)) {
  worker_->ask(std::nullopt);
}

LaunchAtLogin::~LaunchAtLogin() { worker_->letGo(); }

void LaunchAtLogin::setEnabled(bool on) {
  QUILLMERE_CHECK_ON(runtime_.main, "the login item is changed off the main thread");
  isOn_.set(on);
  worker_->ask(on);
}

void LaunchAtLogin::refresh() {
  QUILLMERE_CHECK_ON(runtime_.main, "the login item is read off the main thread");
  worker_->ask(std::nullopt);
}

}  // namespace quillmere
