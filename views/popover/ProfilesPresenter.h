// The profile in use and the menu of all of them.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class MixerState;

/// [main]
class ProfilesPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(QString activeName READ activeName NOTIFY changed FINAL)
  Q_PROPERTY(quillmere::MenuModel* menu READ menu CONSTANT FINAL)

 public:
  ProfilesPresenter(std::shared_ptr<MixerState> state, std::function<void()> openWindow, QObject* parent = nullptr);

  /// "Default" when no profile is active or the active one is gone.
  [[nodiscard]] QString activeName() const;
  [[nodiscard]] MenuModel* menu() { return &menu_; }
  /// Saves the present layout as "Untitled" with the next number.
  Q_INVOKABLE void saveCurrent();

 Q_SIGNALS:
  void changed();

 private:
  void refresh();

  std::shared_ptr<MixerState> state_;
  std::function<void()> openWindow_;
  MenuModel menu_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
