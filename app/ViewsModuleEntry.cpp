// The entry of the windows' library.
#include <QQuickWindow>
#include <filesystem>
#include <system_error>
#include <type_traits>

#include "app/ViewsModule.h"
#include "views/ViewFactory.h"

using namespace quillmere;

namespace {

/// A graphics device that OpenGL or Vulkan could run on: the kernel's, one vendor's own, or a host's.
bool hasGraphicsDevice() {
  std::error_code error;
  if (std::filesystem::exists("/dev/nvidia0", error) || std::filesystem::exists("/dev/dxg", error)) return true;
  const std::filesystem::directory_iterator devices("/dev/dri", error);
  return !error && devices != std::filesystem::directory_iterator();
}

/// Without a device, OpenGL is compiled for the processor: the same picture comes later and takes twice the memory.
void chooseRenderer() {
  if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) return;
  if (!hasGraphicsDevice()) QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
}

}  // namespace

extern "C" [[gnu::visibility("default")]] void quillmereMakeViews(Views& views, const std::shared_ptr<AppState>& state,
                                                                  const Runtime& runtime, Machine& machine,
                                                                  const ViewIntents& intents) {
  chooseRenderer();
  const auto factory = std::make_shared<ViewFactory>(state, runtime, machine, intents);
  views.makePopover = [factory] { return factory->makePopover(); };
  views.makeMainWindow = [factory] { return factory->makeMainWindow(); };
}

static_assert(std::is_same_v<decltype(quillmereMakeViews), ViewsModuleEntry>);
