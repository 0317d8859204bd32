// A gain as people read it.
#include "views/shared/PercentText.h"

#include <QCoreApplication>

#include "core/Percent.h"

namespace quillmere {

QString percentText(float gain) {
  //: A percentage; some languages have a space between the number and the sign, which must not break.
  return QCoreApplication::translate("PercentText", "%1%").arg(percentOf(gain));
}

}  // namespace quillmere
