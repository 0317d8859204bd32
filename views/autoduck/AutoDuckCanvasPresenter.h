// What the page of Auto-Duck shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "views/ViewServices.h"
#include "views/autoduck/DuckPresenter.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class AutoDuckCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::DuckPresenter* duck READ duck CONSTANT FINAL)

 public:
  explicit AutoDuckCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] DuckPresenter* duck() { return &duck_; }

 private:
  DuckPresenter duck_;
};

}  // namespace quillmere
