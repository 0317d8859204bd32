// The entry of the windows' library.
#include <QQuickWindow>
#include <type_traits>

#include "app/ViewsModule.h"
#include "views/ViewFactory.h"

using namespace quillmere;

extern "C" [[gnu::visibility("default")]] void quillmereMakeViews(Views& views, const std::shared_ptr<AppState>& state,
                                                                  const Runtime& runtime, Machine& machine,
                                                                  const ViewIntents& intents) {
  const auto factory = std::make_shared<ViewFactory>(state, runtime, machine, intents);
  views.makePopover = [factory] { return factory->makePopover(); };
  views.makeMainWindow = [factory] { return factory->makeMainWindow(); };
}

static_assert(std::is_same_v<decltype(quillmereMakeViews), ViewsModuleEntry>);
