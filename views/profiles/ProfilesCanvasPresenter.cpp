// What the page of the profiles shows.
#include "views/profiles/ProfilesCanvasPresenter.h"

namespace quillmere {

ProfilesCanvasPresenter::ProfilesCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), list_(services.state) {}

}  // namespace quillmere
