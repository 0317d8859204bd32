// A link of ours between two ports, gone with us. [loop]
#pragma once

#include <spa/utils/hook.h>

#include <functional>
#include <string>

#include "GraphModel.h"
#include "runtime/Logger.h"

struct pw_core;
struct pw_proxy;

namespace quillmere::pipewire {

class OwnLink {
 public:
  /// Passive: it keeps no device awake. `what` begins the log line that says why the link can't be made. `changed` is
  /// told on the loop when isStanding() or isGone() may have changed.
  OwnLink(pw_core* core, const PortRecord& output, const PortRecord& input, Logger log, std::string what,
          std::function<void()> changed);
  ~OwnLink();
  OwnLink(const OwnLink&) = delete;
  OwnLink& operator=(const OwnLink&) = delete;

  /// With its format and its buffers settled.
  [[nodiscard]] bool isStanding() const { return isStanding_ && !isGone_; }
  /// Refused, or taken away by somebody.
  [[nodiscard]] bool isGone() const { return isGone_; }

 private:
  struct Callbacks;
  void fail(int result, const char* message);

  Logger log_;
  std::string what_;
  std::function<void()> changed_;
  pw_proxy* proxy_ = nullptr;
  spa_hook proxyListener_{};
  spa_hook listener_{};
  bool isStanding_ = false;
  bool isGone_ = false;
};

}  // namespace quillmere::pipewire
