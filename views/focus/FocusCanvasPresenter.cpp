// What the page of the focus block shows.
#include "views/focus/FocusCanvasPresenter.h"

namespace quillmere {

FocusCanvasPresenter::FocusCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), focus_(services.state, services.runtime) {
  focus_.setVisible(true);
}

}  // namespace quillmere
