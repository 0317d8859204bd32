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

void Appearance::setFontFamily(const QString& family) { fontFamily_ = isAnyFace(family) ? QString() : family; }

bool Appearance::isAnyFace(const QString& family) {
  static const QStringList names{"", "Sans", "Sans Serif", "sans-serif", "Helvetica", "System-ui"};
  return names.contains(family, Qt::CaseInsensitive);
}

}  // namespace quillmere
