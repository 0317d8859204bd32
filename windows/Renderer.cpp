// Looks for a graphics device.
#include "windows/Renderer.h"

#include <QQuickWindow>
#include <filesystem>
#include <system_error>

namespace quillmere {

namespace {

/// A graphics device that OpenGL or Vulkan could run on: the kernel's, one vendor's own, or a host's.
bool hasGraphicsDevice() {
  std::error_code error;
  if (std::filesystem::exists("/dev/nvidia0", error) || std::filesystem::exists("/dev/dxg", error)) return true;
  const std::filesystem::directory_iterator devices("/dev/dri", error);
  return !error && devices != std::filesystem::directory_iterator();
}

}  // namespace

void chooseRenderer() {
  if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) return;
  // Without a device, OpenGL is compiled for the processor: the same picture comes later and takes twice the memory.
  if (!hasGraphicsDevice()) QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
}

}  // namespace quillmere
