// What the page of the profiles shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "views/ViewServices.h"
#include "views/profiles/ProfileListModel.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class ProfilesCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::ProfileListModel* list READ list CONSTANT FINAL)

 public:
  explicit ProfilesCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] ProfileListModel* list() { return &list_; }

 private:
  ProfileListModel list_;
};

}  // namespace quillmere
