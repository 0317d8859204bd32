// What the page of the focus block shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "views/ViewServices.h"
#include "views/focus/FocusPresenter.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class FocusCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::FocusPresenter* focus READ focus CONSTANT FINAL)

 public:
  explicit FocusCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] FocusPresenter* focus() { return &focus_; }

 private:
  FocusPresenter focus_;
};

}  // namespace quillmere
