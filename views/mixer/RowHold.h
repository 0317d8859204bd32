// Keeps a row's presenter as long as something shows it.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QPointer>

#include "views/mixer/AppRowPresenter.h"

namespace quillmere {

/// Whoever shows a row contains one. A list keeps showing a row that its model has given up: while it fades, and for as
/// long as a hidden window draws no picture. [main]
class RowHold : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(quillmere::AppRowPresenter* row READ row WRITE setRow NOTIFY rowChanged FINAL REQUIRED)

 public:
  using QObject::QObject;
  ~RowHold() override;

  [[nodiscard]] AppRowPresenter* row() const { return row_; }
  void setRow(AppRowPresenter* row);

 Q_SIGNALS:
  void rowChanged();

 private:
  QPointer<AppRowPresenter> row_;
};

}  // namespace quillmere
