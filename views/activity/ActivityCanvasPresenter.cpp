// What the page of the activity shows.
#include "views/activity/ActivityCanvasPresenter.h"

namespace quillmere {

ActivityCanvasPresenter::ActivityCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state) {}

}  // namespace quillmere
