// The program on Linux: PipeWire, D-Bus, XDG and SQLite behind the ports.
#include "app/ViewsModule.h"
#include "platform/Machine.h"
#include "platform/SingleInstance.h"
#include "platform/linux/JournalLogSink.h"
#include "platform/linux/LinuxMachine.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "shell/Application.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  Host host;
  host.makeLogSink = [] { return std::make_unique<JournalLogSink>(); };
  host.makeMachine = [](const Runtime& runtime) { return makeLinuxMachine(runtime); };
  host.makeSingleInstance = [](const Runtime& runtime) {
    return std::make_unique<LinuxSingleInstance>(runtime.main, runtime.log);
  };
  host.makeViews = openViewsModule();
  return runApplication(argc, argv, host);
}
