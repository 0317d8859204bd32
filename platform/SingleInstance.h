// One running instance a user: the first keeps the place, later ones ask it to show itself and end.
#pragma once

#include <functional>

namespace quillmere {

/// [main]
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;
  /// Called on [main] when another instance was started and has asked this one to show itself. Set before acquire().
  virtual void onActivationRequested(std::function<void()> callback) = 0;
  /// True: this is the only instance and keeps the place until it is destroyed. False: another one runs and has been
  /// asked to show itself; the caller ends. Where nothing can tell instances apart, true. Waits for two seconds at
  /// most.
  [[nodiscard]] virtual bool acquire() = 0;
};

}  // namespace quillmere
