// One permission as views show it.
#include "views/shared/PermissionPresenter.h"

#include <utility>

namespace quillmere {

PermissionPresenter::PermissionPresenter(const Observable<PermissionStatus>& status, std::function<void()> grant,
                                         QObject* parent)
    : QObject(parent),
      status_(status),
      grant_(std::move(grant)),
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

void PermissionPresenter::grant() { grant_(); }

}  // namespace quillmere
