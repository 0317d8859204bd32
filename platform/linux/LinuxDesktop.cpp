// Putting the desktop together.
#include "platform/linux/LinuxDesktop.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/linux/LinuxApplicationChooser.h"
#include "platform/linux/LinuxBrowserSetUp.h"
#include "platform/linux/LinuxDesktopLook.h"
#include "platform/linux/LinuxLoginItem.h"
#include "platform/linux/LinuxPermissions.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/PortalLoginItem.h"
#include "portal/Portal.h"

namespace quillmere {

namespace {

/// The host's configuration folder, as Flatpak tells of it; the sandbox's own is somewhere else.
std::unique_ptr<LoginItem> loginItemOutside() {
  const char* folder = std::getenv("HOST_XDG_CONFIG_HOME");
  if (folder == nullptr || *folder != '/') return nullptr;
  LinuxLoginItemOptions options;
  options.configHome = folder;
  options.configFolders = std::vector<std::string>{};
  options.seesPrograms = false;
  return std::make_unique<LinuxLoginItem>(std::move(options));
}

std::unique_ptr<LoginItem> makeLoginItem(const std::shared_ptr<portal::Portal>& portal, std::string program) {
  if (isSandboxed()) return std::make_unique<PortalLoginItem>(portal, loginItemOutside());
  LinuxLoginItemOptions options;
  options.program = std::move(program);
  return std::make_unique<LinuxLoginItem>(std::move(options));
}

}  // namespace

Desktop makeLinuxDesktop(const Runtime& runtime, LinuxDesktopOptions options) {
  Desktop desktop;
  const auto registry = std::make_shared<ApplicationRegistry>(runtime, std::move(options.applications));
  const auto portal = std::make_shared<portal::Portal>(std::move(options.busAddress));
  desktop.workspace = std::make_unique<LinuxWorkspace>(registry, LinuxWorkspace::AudioClients{}, runtime.log);
  desktop.permissions = std::make_unique<LinuxPermissions>(portal, runtime);
  desktop.loginItem = makeLoginItem(portal, std::move(options.program));
  desktop.look = std::make_unique<LinuxDesktopLook>(portal, runtime);
  desktop.applicationChooser = std::make_unique<LinuxApplicationChooser>(portal, runtime, std::move(options.chooser));
  // A sandbox sees neither the browsers nor their folders.
  if (!isSandboxed()) {
    LinuxBrowserSetUpOptions browsers;
    browsers.hostProgram = std::move(options.tabsProgram);
    browsers.companionFolder = std::move(options.companionFolder);
    desktop.browserSetUp = std::make_unique<LinuxBrowserSetUp>(std::move(browsers));
  }
  return desktop;
}

bool isSandboxed() {
  std::error_code error;
  return std::filesystem::exists("/.flatpak-info", error) || std::getenv("SNAP") != nullptr;
}

}  // namespace quillmere
