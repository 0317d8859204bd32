// One rule for each kind of display.
#include "windows/WindowSight.h"

#include <QWindow>

#include "windows/X11.h"

namespace quillmere {

Sight sightFrom(const SightFacts& facts) {
  if (!facts.isX11) {
    if (facts.isExposed) return Sight::seen;
    // Or the compositor is very slow.
    return facts.isActive ? Sight::doubtful : Sight::unseen;
  }
  const bool isElsewhere = facts.isOnAnotherDesktop || facts.isUntold;
  return isElsewhere && !facts.isActive ? Sight::unseen : Sight::seen;
}

Sight sightOf(QWindow& window) {
  SightFacts facts;
  facts.isExposed = window.isExposed();
  facts.isX11 = x11::connection() != nullptr;
  facts.isActive = facts.isX11 ? x11::isActive(window) : window.isActive();
  if (facts.isX11) {
    facts.isOnAnotherDesktop = x11::isOnAnotherDesktop(window);
    facts.isUntold = x11::isOfWlroots();
  }
  return sightFrom(facts);
}

}  // namespace quillmere
