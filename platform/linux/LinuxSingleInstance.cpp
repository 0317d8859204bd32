// One instance a user, by two witnesses.
#include "platform/linux/LinuxSingleInstance.h"

#include <cstdlib>
#include <utility>

#include "bus/SessionBusAddress.h"
#include "instance/BusPlace.h"
#include "instance/FilePlace.h"

namespace quillmere {

using instance::Outcome;

struct LinuxSingleInstance::Callback {
  std::function<void(const ActivationRequest&)> function;
};

LinuxSingleInstance::LinuxSingleInstance(Executor& main, LogSink& log, LinuxSingleInstanceOptions options)
    : main_(main),
      sink_(log),
      log_(log, "SingleInstance"),
      options_(std::move(options)),
      callback_(std::make_shared<Callback>()) {}

LinuxSingleInstance::~LinuxSingleInstance() = default;

void LinuxSingleInstance::onActivationRequested(std::function<void(const ActivationRequest&)> callback) {
  callback_->function = std::move(callback);
}

bool LinuxSingleInstance::acquire(const std::optional<ActivationRequest>& request) {
  if (isFirst_) return true;
  const auto activated = [&main = main_, weak = std::weak_ptr<Callback>(callback_)](const ActivationRequest& wish) {
    main.post([weak, wish] {
      const auto callback = weak.lock();
      if (callback && callback->function) callback->function(wish);
    });
  };
  auto onBus = Outcome::unavailable;
  if (const auto address = options_.busAddress.value_or(sessionBusAddress()); !address.empty()) {
    busPlace_ = std::make_unique<instance::BusPlace>(options_.busAddress, sink_, activated);
    onBus = busPlace_->take(request);
    if (onBus == Outcome::unavailable) log_.standard("the session bus does not answer; a lock file keeps the place");
  }
  auto inFolder = Outcome::unavailable;
  const char* variable = std::getenv("XDG_RUNTIME_DIR");
  const auto folder = options_.runtimeFolder.value_or(variable == nullptr ? "" : variable);
  if (onBus != Outcome::second && folder.starts_with('/')) {
    // The bus may have been away a moment ago, and the holder of the place be about to come back to it.
    filePlace_ = std::make_unique<instance::FilePlace>(folder, request, activated);
    inFolder = filePlace_->result();
  }
  isFirst_ = onBus != Outcome::second && inFolder != Outcome::second;
  if (!isFirst_) {
    busPlace_.reset();
    filePlace_.reset();
  } else if (onBus == Outcome::unavailable && inFolder == Outcome::unavailable) {
    log_.error("no session bus and no runtime folder: other instances cannot be told apart");
  }
  return isFirst_;
}

}  // namespace quillmere
