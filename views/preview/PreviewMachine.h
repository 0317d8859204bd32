// A machine in memory with the state running on it in virtual time, to be filled with whatever a picture needs.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/Machine.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"
#include "state/AppState.h"

namespace quillmere {

/// [main]
class PreviewMachine {
 public:
  PreviewMachine();
  ~PreviewMachine();
  PreviewMachine(const PreviewMachine&) = delete;
  PreviewMachine& operator=(const PreviewMachine&) = delete;

  void addDevice(const std::string& uid, const std::string& name);
  /// A running application. `icon` is the path of an image; empty for none.
  void launch(const std::string& bundleID, const std::string& name, bool sounds, const std::string& icon = {});
  void setListening(const std::string& bundleID, bool listens);
  /// Starts the state and lets it see everything.
  void start();
  void advance(double seconds);

  VirtualTime time;
  RecordingLogSink log;
  Machine machine;
  MemoryAudioHardware& audio;
  MemoryWorkspace& workspace;
  Runtime runtime;
  std::shared_ptr<AppState> state;
  std::shared_ptr<Observable<std::optional<std::string>>> latestVersion =
      std::make_shared<Observable<std::optional<std::string>>>();

 private:
  struct Running {
    AudioObjectID object = 0;
    MemoryProcess process;
  };
  std::map<std::string, Running> running_;
  std::int32_t lastPID_ = 1000;
};

}  // namespace quillmere
