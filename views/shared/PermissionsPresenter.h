// Both permissions, kept up to date while a view that shows them can be seen.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "views/ViewServices.h"
#include "views/shared/PermissionPresenter.h"

namespace quillmere {

class PermissionMonitor;

/// [main]
class PermissionsPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(quillmere::PermissionPresenter* accessibility READ accessibility CONSTANT FINAL)
  Q_PROPERTY(quillmere::PermissionPresenter* focusStatus READ focusStatus CONSTANT FINAL)

 public:
  explicit PermissionsPresenter(const ViewServices& services, QObject* parent = nullptr);
  ~PermissionsPresenter() override;

  [[nodiscard]] PermissionPresenter* accessibility() { return &accessibility_; }
  [[nodiscard]] PermissionPresenter* focusStatus() { return &focusStatus_; }
  /// The system is asked again and again while this is on.
  void setVisible(bool visible);

 private:
  PermissionMonitor& monitor_;
  PermissionPresenter accessibility_;
  PermissionPresenter focusStatus_;
  bool isVisible_ = false;
};

}  // namespace quillmere
