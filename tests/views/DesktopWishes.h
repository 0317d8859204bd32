// The desktop's wishes, for Qt Quick tests to change.
#pragma once

#include <QObject>

#include "views/design/Appearance.h"

namespace quillmere {

class DesktopWishes : public QObject {
  Q_OBJECT

 public:
  Q_INVOKABLE static void reduceMotion(bool reduces) { Appearance::shared().setReducesMotion(reduces); }
  Q_INVOKABLE static void wantContrast(bool wants) { Appearance::shared().setWantsContrast(wants); }
  /// As a desktop without wishes has it.
  Q_INVOKABLE static void reset() {
    reduceMotion(false);
    wantContrast(false);
  }
};

}  // namespace quillmere
