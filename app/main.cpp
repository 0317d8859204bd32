// The program on Linux: PipeWire, D-Bus, XDG and SQLite behind the ports, and its windows in a program of their own.
#include "platform/Machine.h"
#include "platform/SingleInstance.h"
#include "platform/linux/ActivationToken.h"
#include "platform/linux/JournalLogSink.h"
#include "platform/linux/LinuxMachine.h"
#include "platform/linux/LinuxSessionWatch.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "platform/linux/LinuxStatusItem.h"
#include "platform/linux/LinuxWindowsLauncher.h"
#include "shell/Application.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  Host host;
  host.makeLogSink = [] { return std::make_unique<JournalLogSink>(); };
  host.makeMachine = [](const Runtime& runtime) { return makeLinuxMachine(runtime); };
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
        std::vector<std::string>{"quillmere-windows", QUILLMERE_WINDOWS_FOLDER "/quillmere-windows"}, runtime.log);
    return launcher->isComplete() ? std::move(launcher) : nullptr;
  };
  host.makeSessionWatch = [](const Runtime& runtime) { return std::make_unique<LinuxSessionWatch>(runtime.main); };
  return runApplication(argc, argv, host);
}
