// Who tells the tabs of browsers, as the port says it.
#include <memory>

#include "platform/Machine.h"
#include "state/AppState.h"

namespace quillmere {

void AppState::followBrowserCompanions() {
  auto* companions = machine_.browserCompanions.get();
  if (companions == nullptr) return;
  companions->onChanged([weak = weak_from_this(), companions] {
    if (const auto self = weak.lock()) self->browserCompanions_.set(companions->connected());
  });
  browserCompanions_.set(companions->connected());
}

}  // namespace quillmere
