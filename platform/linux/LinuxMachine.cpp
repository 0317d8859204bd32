// Putting the machine together.
#include "platform/linux/LinuxMachine.h"

#include <memory>
#include <utility>

#include "mpris/PlayerWatcher.h"
#include "platform/linux/LinuxTabScripting.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/MprisMediaKeys.h"
#include "platform/linux/MprisNowPlaying.h"
#include "platform/linux/SqliteUserDefaults.h"
#include "platform/linux/TonePlayer.h"

namespace quillmere {

Machine makeLinuxMachine(const Runtime& runtime, LinuxMachineOptions options) {
  Machine machine;
  const auto registry = std::make_shared<ApplicationRegistry>(runtime, std::move(options.applications));
  const auto remote = options.audio.remote;
  auto audio = std::make_unique<PipeWireAudioHardware>(
      runtime.main, runtime.log, [registry](const ClientFacts& facts) { return registry->identify(facts); },
      std::move(options.audio));
  // The workspace goes before the audio host does.
  machine.workspace =
      std::make_unique<LinuxWorkspace>(registry, [host = audio.get()] { return host->audioClients(); }, runtime.log);
  machine.audio = std::move(audio);
  const auto file =
      options.defaultsFile ? std::filesystem::path(*options.defaultsFile) : SqliteUserDefaults::standardFile();
  machine.defaults = std::make_unique<SqliteUserDefaults>(file, runtime.clocks, runtime.log);
  mpris::PlayerWatcherOptions players;
  players.address = std::move(options.busAddress);
  const auto watcher = std::make_shared<mpris::PlayerWatcher>(runtime.clocks, runtime.log, std::move(players));
  machine.nowPlaying = std::make_unique<MprisNowPlaying>(runtime, watcher,
                                                         [registry](std::int32_t pid, const std::string& desktopEntry) {
                                                           return registry->representativePID(pid, desktopEntry);
                                                         });
  machine.mediaKeys = std::make_unique<MprisMediaKeys>(watcher);
  machine.sounds = std::make_unique<TonePlayer>(runtime, remote);
  auto tabs = std::make_unique<LinuxTabScripting>(runtime, registry,
                                                  LinuxTabScriptingOptions{std::move(options.runtimeFolder)});
  machine.browserCompanions = tabs->companions();
  machine.tabScripting = std::move(tabs);
  if (options.releaseFeed) {
    machine.releaseFeed = std::make_unique<LinuxReleaseFeed>(runtime.main, std::move(*options.releaseFeed));
  }
  return machine;
}

}  // namespace quillmere
