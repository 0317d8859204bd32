// One rule for each kind of display.
#include "windows/WindowSight.h"

#include <QWindow>

#include "windows/X11.h"

namespace quillmere {

bool isOutOfSight(const SightFacts& facts) {
  if (facts.isActive) return false;
  if (!facts.isX11) return !facts.isExposed;
  return facts.isOnAnotherDesktop || facts.isUntold;
}

bool isWindowOutOfSight(QWindow& window) {
  SightFacts facts;
  facts.isExposed = window.isExposed();
  facts.isX11 = x11::connection() != nullptr;
  facts.isActive = facts.isX11 ? x11::isActive(window) : window.isActive();
  if (facts.isX11) {
    facts.isOnAnotherDesktop = x11::isOnAnotherDesktop(window);
    facts.isUntold = x11::isOfWlroots();
  }
  return isOutOfSight(facts);
}

}  // namespace quillmere
