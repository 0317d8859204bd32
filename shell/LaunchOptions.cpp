// The command line.
#include "shell/LaunchOptions.h"

#include <getopt.h>

#include <array>
#include <cstdlib>
#include <ostream>
#include <string>

#include "core/Product.h"
#include "core/Texts.h"

namespace quillmere {

namespace {

std::string help() {
  return translated(
      "Usage: quillmere [options]\n"
      "A volume, a mute and an output for every application.\n"
      "\n"
      "Options:\n"
      "  --activated       Start as the session bus does: it tells what to show.\n"
      "  --background      Start into the tray without opening a window, as at login.\n"
      "  --section=NAME    Show that section of the window: Mixer, Profiles, Activity,\n"
      "                    Auto-Duck, Focus or Settings.\n"
      "  -h, --help        Display this help.\n"
      "  -v, --version     Display the version.\n");
}

}  // namespace

std::optional<LaunchOptions> parseArguments(int argc, char** argv, std::ostream& out, std::ostream& problems,
                                            int& exitCode) {
  constexpr int activated = 'a';
  constexpr int background = 'b';
  constexpr int section = 's';
  const std::array<option, 6> known{{{"activated", no_argument, nullptr, activated},
                                     {"background", no_argument, nullptr, background},
                                     {"section", required_argument, nullptr, section},
                                     {"help", no_argument, nullptr, 'h'},
                                     {"version", no_argument, nullptr, 'v'},
                                     {nullptr, 0, nullptr, 0}}};
  LaunchOptions options;
  exitCode = EXIT_SUCCESS;
  // From the start, however often this is called; and the text of what was wrong is ours.
  optind = 0;
  opterr = 0;
  for (;;) {
    const int at = optind > 0 ? optind : 1;
    const int choice = getopt_long(argc, argv, "hv", known.data(), nullptr);
    if (choice == -1) break;
    if (choice == activated) {
      options.isActivated = true;
    } else if (choice == background) {
      options.inBackground = true;
    } else if (choice == section) {
      options.section = optarg;
    } else if (choice == 'h') {
      out << help();
      return std::nullopt;
    } else if (choice == 'v') {
      out << "quillmere " << appVersion() << '\n';
      return std::nullopt;
    } else {
      problems << translated("quillmere: unknown option %1; --help tells them", at < argc ? argv[at] : "") << '\n';
      exitCode = EXIT_FAILURE;
      return std::nullopt;
    }
  }
  if (optind < argc) {
    problems << translated("quillmere: what is %1? --help tells the options", argv[optind]) << '\n';
    exitCode = EXIT_FAILURE;
    return std::nullopt;
  }
  return options;
}

}  // namespace quillmere
