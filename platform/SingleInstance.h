// One running instance a user: the first keeps the place, later ones ask it to show itself and end.
#pragma once

#include <functional>
#include <optional>

#include "platform/ActivationRequest.h"

namespace quillmere {

/// [main]
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;
  /// Called on [main] when another instance was started and has asked this one to show itself. What is asked while
  /// nobody is set here is lost.
  virtual void onActivationRequested(std::function<void(const ActivationRequest& request)> callback) = 0;
  /// True: this is the only instance and keeps the place until it is destroyed. False: another one runs, and has been
  /// asked for what `request` says, if anything; the caller ends. Where nothing can tell instances apart, true. Waits
  /// for two seconds at most.
  [[nodiscard]] virtual bool acquire(const std::optional<ActivationRequest>& request) = 0;
};

}  // namespace quillmere
