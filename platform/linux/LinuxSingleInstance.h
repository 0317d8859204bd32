// The place of the only instance: a name on the session bus, or a lock file in the runtime folder where there is no
// bus.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/SingleInstance.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere {

struct LinuxSingleInstanceOptions {
  /// D-Bus address; absent means the session's, empty means none.
  std::optional<std::string> busAddress;
  /// Absent means XDG_RUNTIME_DIR.
  std::optional<std::string> runtimeFolder;
};

/// On the bus: the name "app.quillmere.host" with org.freedesktop.Application, so that desktops can activate it as
/// well. [main]
class LinuxSingleInstance final : public SingleInstance {
 public:
  LinuxSingleInstance(Executor& main, LogSink& log, LinuxSingleInstanceOptions options = {});
  ~LinuxSingleInstance() override;
  LinuxSingleInstance(const LinuxSingleInstance&) = delete;
  LinuxSingleInstance& operator=(const LinuxSingleInstance&) = delete;

  void onActivationRequested(std::function<void()> callback) override;
  [[nodiscard]] bool acquire() override;

 private:
  class Place;
  struct Callback;
  class BusPlace;
  class FilePlace;

  Executor& main_;
  Logger log_;
  LinuxSingleInstanceOptions options_;
  std::shared_ptr<Callback> callback_;
  std::unique_ptr<Place> place_;
};

}  // namespace quillmere
