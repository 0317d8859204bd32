// A machine in memory for pictures.
#include "views/preview/PreviewMachine.h"

#include <utility>

#include "platform/memory/MemoryMediaKeys.h"
#include "platform/memory/MemoryNowPlayingSource.h"
#include "platform/memory/MemorySoundPlayer.h"
#include "platform/memory/MemoryUserDefaults.h"
#include "state/EngineCalls.h"

namespace quillmere {

namespace {

/// Pictures make no sound.
class SilentEngine final : public EngineCalls {
 public:
  explicit SilentEngine(Executor& background) : background_(background) {}
  void applyGain(float, const std::string&) override {}
  void applyRouting(const std::optional<std::string>&, const std::string&) override {}
  void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot>) override {}
  std::set<std::string> activeBundleIDs() override { return {}; }
  bool isHearing() override { return false; }
  const ChangeSignal& changes() override { return changes_; }
  void refreshUnroutedSubgraphsForNewSystemDefault() override {}
  Stream<std::map<std::string, float>> levelsStream() override {
    using Levels = Stream<std::map<std::string, float>>;
    return Levels::produce(background_, [](TaskContext&, Levels::Writer&) -> Async<void> { co_return; });
  }

 private:
  Executor& background_;
  ChangeSignal changes_;
};

}  // namespace

PreviewMachine::PreviewMachine()
    : machine{std::make_unique<MemoryAudioHardware>(time.main(), time),
              std::make_unique<MemoryUserDefaults>(),
              std::make_unique<MemoryWorkspace>(),
              std::make_unique<MemoryNowPlayingSource>(time.main()),
              std::make_unique<MemoryMediaKeys>(),
              std::make_unique<MemorySoundPlayer>()},
      audio(static_cast<MemoryAudioHardware&>(*machine.audio)),
      workspace(static_cast<MemoryWorkspace&>(*machine.workspace)),
      runtime(time.runtime(log)),
      services(std::move(desktop.desktop), runtime) {}

PreviewMachine::~PreviewMachine() {
  state.reset();
  time.shutDown();
}

void PreviewMachine::addDevice(const std::string& uid, const std::string& name) {
  constexpr float volume = 0.64F;
  const auto device = audio.addDevice({uid, name, 1, audio::transportBuiltIn, true, {{0, {volume}}}});
  if (audio.defaultOutput() == 0) audio.setDefaultOutput(device);
}

void PreviewMachine::launch(const std::string& bundleID, const std::string& name, bool sounds,
                            const std::string& icon) {
  const auto pid = ++lastPID_;
  workspace.launch(bundleID, name, pid);
  desktop.workspace.launch(bundleID, name, pid);
  if (!icon.empty()) desktop.workspace.setIcon(bundleID, FileIcon{icon});
  const MemoryProcess process{bundleID, pid, sounds, false};
  running_[bundleID] = {audio.addProcess(process), process};
}

void PreviewMachine::install(const std::string& bundleID, const std::string& name, const std::string& icon) {
  desktop.workspace.install(bundleID, name, "/usr/share/applications/" + bundleID + ".desktop");
  if (!icon.empty()) desktop.workspace.setIcon(bundleID, FileIcon{icon});
}

void PreviewMachine::play(const std::string& title, const std::string& artist, const std::string& bundleID,
                          bool playing) {
  auto& player = static_cast<MemoryNowPlayingSource&>(*machine.nowPlaying);
  NowPlayingInfo info{{nowplaying::title, title}, {nowplaying::playbackRate, playing ? 1.0 : 0.0}};
  if (!artist.empty()) info[nowplaying::artist] = artist;
  player.setInfo(std::move(info));
  const auto source = running_.find(bundleID);
  player.setApplicationPID(source == running_.end() ? -1 : source->second.process.pid);
}

void PreviewMachine::setListening(const std::string& bundleID, bool listens) {
  auto& each = running_.at(bundleID);
  each.process.isRunningInput = listens;
  audio.updateProcess(each.object, each.process);
}

void PreviewMachine::start() {
  state = AppState::create(machine, runtime, std::make_shared<SilentEngine>(time.background()));
  state->useUpdater(updater);
  time.runUntilIdle();
  advance(0.4);
}

void PreviewMachine::advance(double seconds) {
  time.advance(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
}

}  // namespace quillmere
