// What the page of Auto-Duck shows.
#include "views/autoduck/AutoDuckCanvasPresenter.h"

namespace quillmere {

AutoDuckCanvasPresenter::AutoDuckCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), duck_(services.state) {}

}  // namespace quillmere
