// The table.
#include "tabs/Browsers.h"

#include <algorithm>

namespace quillmere::tabs {

namespace {

using Words = std::string_view;

constexpr Words chromeCommands[] = {"google-chrome", "google-chrome-stable", "google-chrome-beta",
                                    "google-chrome-unstable"};
constexpr Words chromePrograms[] = {"chrome"};
constexpr Words chromeFolders[] = {"google-chrome", "google-chrome-beta", "google-chrome-unstable"};
constexpr Words chromiumCommands[] = {"chromium", "chromium-browser"};
constexpr Words chromiumPrograms[] = {"chromium", "chromium-browser"};
constexpr Words chromiumFolders[] = {"chromium"};
constexpr Words braveCommands[] = {"brave-browser", "brave-browser-stable", "brave"};
constexpr Words bravePrograms[] = {"brave"};
constexpr Words braveFolders[] = {"BraveSoftware/Brave-Browser", "BraveSoftware/Brave-Browser-Beta",
                                  "BraveSoftware/Brave-Browser-Nightly"};
constexpr Words edgeCommands[] = {"microsoft-edge", "microsoft-edge-stable", "microsoft-edge-beta",
                                  "microsoft-edge-dev"};
constexpr Words edgePrograms[] = {"msedge"};
constexpr Words edgeFolders[] = {"microsoft-edge", "microsoft-edge-beta", "microsoft-edge-dev"};

constexpr Browser table[] = {
    {"chrome", "Google Chrome", chromeCommands, chromePrograms, chromeFolders,
     "/etc/opt/chrome/native-messaging-hosts"},
    {"chromium", "Chromium", chromiumCommands, chromiumPrograms, chromiumFolders,
     "/etc/chromium/native-messaging-hosts"},
    {"brave", "Brave", braveCommands, bravePrograms, braveFolders, ""},
    {"edge", "Microsoft Edge", edgeCommands, edgePrograms, edgeFolders, "/etc/opt/edge/native-messaging-hosts"},
};

}  // namespace

std::span<const Browser> knownBrowsers() { return table; }

std::string keyOfProgram(const std::string& program) {
  for (const auto& browser : table) {
    if (std::ranges::find(browser.programs, program) != browser.programs.end()) return std::string(browser.key);
  }
  return program;
}

}  // namespace quillmere::tabs
