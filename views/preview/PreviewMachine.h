// A machine in memory with the state running on it in virtual time, to be filled with whatever a picture needs.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "integrations/DesktopServices.h"
#include "platform/Machine.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"
#include "state/AppState.h"
#include "views/preview/PreviewUpdater.h"

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
  /// An application that is there and does not run.
  void install(const std::string& bundleID, const std::string& name, const std::string& icon = {});
  /// A player tells of a track; an empty identifier for nobody.
  void play(const std::string& title, const std::string& artist, const std::string& bundleID, bool playing);
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
  /// What the windows ask themselves. Applications that are launched run here too.
  MemoryDesktop desktop;
  DesktopServices services;
  PreviewUpdater updater;
  std::shared_ptr<AppState> state;

 private:
  struct Running {
    AudioObjectID object = 0;
    MemoryProcess process;
  };
  std::map<std::string, Running> running_;
  std::int32_t lastPID_ = 1000;
};

}  // namespace quillmere
