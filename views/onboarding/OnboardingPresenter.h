// The first run: a greeting, the permissions, and the end.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <functional>
#include <memory>

#include "views/ViewServices.h"
#include "views/shared/PermissionsPresenter.h"

namespace quillmere {

class MixerState;

/// [main] Made with its window and gone with it.
class OnboardingPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")
  Q_PROPERTY(Step step READ step NOTIFY stepChanged FINAL)
  Q_PROPERTY(int stepCount READ stepCount CONSTANT FINAL)
  Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY stepChanged FINAL)
  Q_PROPERTY(quillmere::PermissionsPresenter* permissions READ permissions CONSTANT FINAL)

 public:
  /// The pages, in their order.
  enum Step { Welcome, Permissions };
  Q_ENUM(Step)

  explicit OnboardingPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] Step step() const { return step_; }
  [[nodiscard]] static int stepCount() { return Permissions + 1; }
  [[nodiscard]] bool canGoBack() const { return step_ != Welcome; }
  [[nodiscard]] PermissionsPresenter* permissions() { return &permissions_; }
  /// Told by the window: permissions are asked for only while it can be seen.
  void setVisible(bool visible);

  /// On the first step it does nothing.
  Q_INVOKABLE void back();
  /// On the last step it ends the first run for good.
  Q_INVOKABLE void next();

 Q_SIGNALS:
  void stepChanged();

 private:
  void setStep(Step step);

  std::shared_ptr<MixerState> state_;
  std::function<void()> onFinish_;
  PermissionsPresenter permissions_;
  Step step_ = Welcome;
};

}  // namespace quillmere
