// One permission as views show it: whether it is given, what its button says, and what that does.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <functional>

#include "integrations/PermissionStatus.h"
#include "runtime/Observable.h"

namespace quillmere {

/// [main]
class PermissionPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(Status status READ status NOTIFY statusChanged FINAL)
  Q_PROPERTY(bool granted READ isGranted NOTIFY statusChanged FINAL)
  Q_PROPERTY(QString text READ text NOTIFY statusChanged FINAL)
  Q_PROPERTY(QString hint READ hint NOTIFY statusChanged FINAL)

 public:
  enum Status { NotDetermined, Granted, Denied };
  Q_ENUM(Status)

  /// The field outlives this; `grant` is what the button does, whatever it says, and tells whether that opened
  /// anything. `wayWithout` is how the permission comes where it didn't.
  PermissionPresenter(const Observable<PermissionStatus>& status, std::function<bool()> grant, QString wayWithout,
                      QObject* parent = nullptr);

  [[nodiscard]] Status status() const;
  [[nodiscard]] bool isGranted() const { return status() == Granted; }
  /// The label of what is granted, else the button's.
  [[nodiscard]] QString text() const;

  /// Empty, unless the button was pressed and there was nothing for it to open.
  [[nodiscard]] QString hint() const;

  Q_INVOKABLE void grant();

 Q_SIGNALS:
  void statusChanged();

 private:
  const Observable<PermissionStatus>& status_;
  std::function<bool()> grant_;
  QString wayWithout_;
  bool openedNothing_ = false;
  Subscription subscription_;
};

}  // namespace quillmere
