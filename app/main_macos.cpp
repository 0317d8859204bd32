// The program on macOS: Core Audio, AppKit and their like behind the ports, and its windows in the same process.
#include <memory>
#include <string>
#include <string_view>

#include "app/macos/MacProgramWindows.h"
#include "app/oneprocess/QtMainLoop.h"
#include "app/oneprocess/ToolkitTexts.h"
#include "platform/Machine.h"
#include "platform/SessionWatch.h"
#include "platform/macos/MacActivity.h"
#include "platform/macos/MacLanguages.h"
#include "platform/macos/MacMachine.h"
#include "platform/macos/MacReleaseFeed.h"
#include "platform/macos/MacSingleInstance.h"
#include "platform/macos/MacStatusItem.h"
#include "platform/macos/MacThreads.h"
#include "platform/macos/MacUpdater.h"
#include "platform/macos/UnifiedLogSink.h"
#include "runtime/HostThreads.h"
#include "shell/Application.h"
#include "state/AppState.h"
#include "views/Translation.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  installHostThreads(macThreads());
  const MacActivity activity;
  Host host;
  host.makeLogSink = [] { return std::make_unique<UnifiedLogSink>(); };
  host.makeMainLoop = [&argc, argv] {
    auto loop = std::make_unique<QtMainLoop>(argc, argv);
    const auto languages = preferredLanguages();
    installTranslation(languages);
    useToolkitTexts(languages);
    return loop;
  };
  host.makeMachine = [](const Runtime&) {
    auto machine = makeMacMachine();
    if (constexpr std::string_view feed = QUILLMERE_RELEASE_FEED; !feed.empty()) {
      machine.releaseFeed = std::make_unique<MacReleaseFeed>(MacReleaseFeedOptions{std::string(feed)});
    }
    return machine;
  };
  host.makeSingleInstance = [](const Runtime&) { return std::make_unique<MacSingleInstance>(); };
  // Nobody asks for a reason here.
  host.takeActivationToken = [] { return std::string(); };
  // The icon outlives the windows, whose popover hangs from it.
  MacStatusItem* icon = nullptr;
  host.makeStatusItem = [&icon](const Runtime&) {
    auto made = std::make_unique<MacStatusItem>();
    icon = made.get();
    return made;
  };
  host.makeWindows = [&icon](const std::shared_ptr<AppState>& state, const Runtime& runtime, WindowsIntents intents) {
    return makeMacProgramWindows(state, runtime, std::move(intents), *icon);
  };
  host.makeUpdater = [](Machine& machine, Updater* announced) {
    return std::make_unique<MacUpdater>(*machine.workspace, announced);
  };
  // No session watch: the session's end ends the application object, and with it the loop.
  return runApplication(argc, argv, host);
}
