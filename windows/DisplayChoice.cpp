// Looks at the session.
#include "windows/DisplayChoice.h"

#include <QByteArray>
#include <QtGlobal>

#include "windows/LayerShell.h"

namespace quillmere {

namespace {

constexpr const char* platformVariable = "QT_QPA_PLATFORM";

bool isSet(const char* variable) { return !qEnvironmentVariableIsEmpty(variable); }

}  // namespace

std::string platformFor(const DisplayFacts& facts) {
  if (facts.isNamed || !facts.hasWayland) return {};
  if (facts.hasLayerShell) return "wayland";
  // An X server that doesn't answer is no reason to show nothing.
  return facts.hasXServer ? "xcb;wayland" : std::string();
}

bool hasWaylandCompositor() { return isSet("WAYLAND_DISPLAY"); }

bool chooseDisplay() {
  DisplayFacts facts;
  facts.hasWayland = hasWaylandCompositor();
  facts.hasXServer = isSet("DISPLAY");
  facts.isNamed = isSet(platformVariable);
  const bool mayBeWayland = facts.hasWayland && (!facts.isNamed || qgetenv(platformVariable).startsWith("wayland"));
  facts.hasLayerShell = mayBeWayland && layershell::isOffered();
  if (const auto platform = platformFor(facts); !platform.empty()) {
    qputenv(platformVariable, QByteArray::fromStdString(platform));
  }
  return facts.hasLayerShell;
}

}  // namespace quillmere
