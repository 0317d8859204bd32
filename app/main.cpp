// The program on Linux: PipeWire, D-Bus, XDG and SQLite behind the ports, and its windows in a program of their own.
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Machine.h"
#include "platform/SingleInstance.h"
#include "platform/linux/ActivationToken.h"
#include "platform/linux/GettextTexts.h"
#include "platform/linux/JournalLogSink.h"
#include "platform/linux/LinuxMachine.h"
#include "platform/linux/LinuxSessionWatch.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "platform/linux/LinuxStatusItem.h"
#include "platform/linux/LinuxThreads.h"
#include "platform/linux/LinuxWindowsLauncher.h"
#include "platform/linux/ProgramBeside.h"
#include "platform/linux/SessionLanguages.h"
#include "shell/Application.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  // Before any thread, and before the first text.
  sessionLanguages();
  useGettextTexts({"locale", QUILLMERE_LOCALE_FOLDER});
  installHostThreads(linuxThreads());
  Host host;
  host.makeLogSink = [] { return std::make_unique<JournalLogSink>(); };
  host.makeMachine = [](const Runtime& runtime) {
    LinuxMachineOptions options;
    if (constexpr std::string_view feed = QUILLMERE_RELEASE_FEED; !feed.empty()) {
      auto program = programBeside({"quillmere-feed", QUILLMERE_PROGRAMS_FOLDER "/quillmere-feed"});
      options.releaseFeed = LinuxReleaseFeedOptions{{std::move(program), std::string(feed)}};
    }
    return makeLinuxMachine(runtime, std::move(options));
  };
  host.makeSingleInstance = [](const Runtime& runtime) {
    return std::make_unique<LinuxSingleInstance>(runtime.main, runtime.log);
  };
  host.takeActivationToken = takeActivationToken;
  host.makeStatusItem = [](const Runtime& runtime) {
    return std::make_unique<LinuxStatusItem>(runtime.main, runtime.log);
  };
  host.makeWindowsLauncher = [](const Runtime& runtime) {
    // Where it stands in a build, and in an installation.
    auto launcher = std::make_unique<LinuxWindowsLauncher>(
        std::vector<std::string>{"quillmere-windows", QUILLMERE_PROGRAMS_FOLDER "/quillmere-windows"}, runtime.log);
    return launcher->isComplete() ? std::move(launcher) : nullptr;
  };
  host.makeSessionWatch = [](const Runtime& runtime) { return std::make_unique<LinuxSessionWatch>(runtime.main); };
  return runApplication(argc, argv, host);
}
