// The one appearance.
#include "views/design/Appearance.h"

#include <QStringList>

namespace quillmere {

Appearance& Appearance::shared() {
  static Appearance appearance;
  return appearance;
}

void Appearance::setReducesMotion(bool reduces) {
  if (reducesMotion_ == reduces) return;
  reducesMotion_ = reduces;
  Q_EMIT motionChanged();
}

void Appearance::setWantsContrast(bool wants) {
  if (wantsContrast_ == wants) return;
  wantsContrast_ = wants;
  Q_EMIT contrastChanged();
}

void Appearance::useDesktopFont(const QFont& font) {
  // What toolkits say where nobody has told them anything.
  static const QStringList anyFace{"Sans", "Sans Serif", "sans-serif", "Sans-serif", "Helvetica", "System-ui"};
  const auto family = font.family();
  fontFamily_ = anyFace.contains(family, Qt::CaseInsensitive) ? QString() : family;
}

}  // namespace quillmere
