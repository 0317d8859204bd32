// One permission as views show it.
#include "views/shared/PermissionPresenter.h"

#include <utility>

namespace quillmere {

PermissionPresenter::PermissionPresenter(const Observable<PermissionStatus>& status, std::function<bool()> grant,
                                         QString wayWithout, QObject* parent)
    : QObject(parent),
      status_(status),
      grant_(std::move(grant)),
      wayWithout_(std::move(wayWithout)),
      subscription_(status_.observe([this](PermissionStatus) { Q_EMIT statusChanged(); })) {}

PermissionPresenter::Status PermissionPresenter::status() const {
  switch (*status_) {
    case PermissionStatus::granted:
      return Granted;
    case PermissionStatus::denied:
      return Denied;
    case PermissionStatus::notDetermined:
      break;
  }
  return NotDetermined;
}

QString PermissionPresenter::text() const {
  switch (status()) {
    case Granted:
      return tr("Granted");
    case Denied:
      return tr("Open Settings");
    case NotDetermined:
      break;
  }
  return tr("Grant");
}

QString PermissionPresenter::hint() const { return openedNothing_ && !isGranted() ? wayWithout_ : QString(); }

void PermissionPresenter::grant() {
  openedNothing_ = !grant_();
  Q_EMIT statusChanged();
}

}  // namespace quillmere
