// A number of applications in words.
#include "views/shared/AppCount.h"

#include <QCoreApplication>
#include <algorithm>
#include <limits>

namespace quillmere {

QString countedApps(std::size_t count) {
  const auto number = static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
  return QCoreApplication::translate("AppCount", "%n apps", nullptr, number);
}

}  // namespace quillmere
