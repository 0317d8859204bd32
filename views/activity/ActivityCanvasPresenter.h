// What the page of the activity shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>

#include "views/ViewServices.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class ActivityCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")

 public:
  explicit ActivityCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

 private:
  std::shared_ptr<MixerState> state_;
};

}  // namespace quillmere
