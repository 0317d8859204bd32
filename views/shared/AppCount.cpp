// A number of applications in words.
#include "views/shared/AppCount.h"

#include <QCoreApplication>
#include <algorithm>
#include <limits>

namespace quillmere {

QString countedApps(std::size_t count) {
  const auto number = static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
  // Both take a number, so that a language with other plural forms can give all of them.
  return number == 1 ? QCoreApplication::translate("AppCount", "%n app", nullptr, number)
                     : QCoreApplication::translate("AppCount", "%n apps", nullptr, number);
}

}  // namespace quillmere
