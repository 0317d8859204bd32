// What profiles are called before anybody has named them.
#include "views/shared/ProfileNames.h"

#include <QCoreApplication>

namespace quillmere {

QString nextProfileName(std::size_t count) {
  return QCoreApplication::translate("ProfileNames", "Untitled %1").arg(count + 1);
}

}  // namespace quillmere
