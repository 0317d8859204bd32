// The place of the only instance: a name on the session bus, and a locked file in the runtime folder, which holds where
// there is no bus, and while it is away.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/SingleInstance.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere {

namespace instance {
class BusPlace;
class FilePlace;
}  // namespace instance

struct LinuxSingleInstanceOptions {
  /// D-Bus address; absent means the session's, empty means none.
  std::optional<std::string> busAddress;
  /// Absent means XDG_RUNTIME_DIR.
  std::optional<std::string> runtimeFolder;
};

/// An instance has the place if neither of the two is another one's. [main]
class LinuxSingleInstance final : public SingleInstance {
 public:
  LinuxSingleInstance(Executor& main, LogSink& log, LinuxSingleInstanceOptions options = {});
  ~LinuxSingleInstance() override;
  LinuxSingleInstance(const LinuxSingleInstance&) = delete;
  LinuxSingleInstance& operator=(const LinuxSingleInstance&) = delete;

  void onActivationRequested(std::function<void(const ActivationRequest& request)> callback) override;
  [[nodiscard]] bool acquire(const std::optional<ActivationRequest>& request) override;

 private:
  struct Callback;

  Executor& main_;
  LogSink& sink_;
  Logger log_;
  LinuxSingleInstanceOptions options_;
  std::shared_ptr<Callback> callback_;
  bool isFirst_ = false;
  std::unique_ptr<instance::BusPlace> busPlace_;
  std::unique_ptr<instance::FilePlace> filePlace_;
};

}  // namespace quillmere
