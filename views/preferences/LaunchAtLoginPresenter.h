// Whether the program starts with the session. Nothing of it is kept here: the system knows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "runtime/Observable.h"
#include "views/ViewServices.h"

namespace quillmere {

class LaunchAtLogin;

/// [main] Reads the system's answer again when it is made.
class LaunchAtLoginPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY onChanged FINAL)

 public:
  explicit LaunchAtLoginPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] bool isOn() const;
  /// Asks the system for it; on() is what it says then.
  void setOn(bool on);
  void refresh();

 Q_SIGNALS:
  void onChanged();

 private:
  LaunchAtLogin& service_;
  Subscription subscription_;
};

}  // namespace quillmere
