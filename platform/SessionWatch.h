// The desktop session that the program belongs to.
#pragma once

#include <functional>

namespace quillmere {

/// [main]
class SessionWatch {
 public:
  virtual ~SessionWatch() = default;
  /// Called on [main], once, when the session has ended: nobody can see or use the program any more. Not called where
  /// there was no session to watch.
  virtual void onEnded(std::function<void()> callback) = 0;
  /// Called on [main] whenever the program is asked from outside to end in order: by the session, by the system, by
  /// whoever has started it.
  virtual void onEndRequested(std::function<void()> callback) = 0;
};

}  // namespace quillmere
