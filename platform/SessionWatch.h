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
};

}  // namespace quillmere
