// The program that draws the windows, on Linux.
#include <sys/prctl.h>

#include <csignal>

#include "platform/linux/JournalLogSink.h"
#include "platform/linux/LinuxWindowsLauncher.h"
#include "windows/WindowsApplication.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  // It was started from an open file, whose number would be its name.
  ::prctl(PR_SET_NAME, "quillmere-wins");
  // A terminal's interrupt is for the program behind the windows, which ends these.
  std::signal(SIGINT, SIG_IGN);
  WindowsHost host;
  host.makeLogSink = [] { return std::make_unique<JournalLogSink>(); };
  host.openChannel = openInheritedChannel;
  return runWindows(argc, argv, host);
}
