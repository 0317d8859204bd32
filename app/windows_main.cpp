// The program that draws the windows, on Linux.
#include <sys/prctl.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <utility>

#include "platform/linux/JournalLogSink.h"
#include "platform/linux/LinuxDesktop.h"
#include "platform/linux/LinuxThreads.h"
#include "platform/linux/LinuxWindowsLauncher.h"
#include "platform/linux/ProgramBeside.h"
#include "platform/linux/SessionLanguages.h"
#include "windows/WindowsApplication.h"

int main(int argc, char** argv) {
  using namespace quillmere;
  // It was started from an open file, whose number would be its name.
  ::prctl(PR_SET_NAME, "quillmere-wins");
  // A terminal's interrupt is for the program behind the windows, which ends these.
  std::signal(SIGINT, SIG_IGN);
  installHostThreads(linuxThreads());
  WindowsHost host;
  host.makeLogSink = [] { return std::make_unique<JournalLogSink>(); };
  host.languages = sessionLanguages;
  host.openChannel = openInheritedChannel;
  host.makeDesktop = [](const Runtime& runtime, std::unique_ptr<ApplicationChooser> dialogue) {
    LinuxDesktopOptions options;
    // Where it stands in a build, and in an installation.
    options.program = programBeside({"quillmere", QUILLMERE_PROGRAM_FOLDER "/quillmere"});
    // Beside this one in both.
    options.tabsProgram = programBeside({"quillmere-tabs"});
    options.companionFolder = std::filesystem::path(programBeside({"../../../extension/manifest.json",
                                                                   QUILLMERE_COMPANION_FOLDER "/manifest.json"}))
                                  .parent_path()
                                  .string();
    options.chooser = std::move(dialogue);
    return makeLinuxDesktop(runtime, std::move(options));
  };
  return runWindows(argc, argv, host);
}
