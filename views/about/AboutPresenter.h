// What the About panel says.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace quillmere {

/// [main] Made with its window and gone with it.
class AboutPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")
  Q_PROPERTY(QString versionText READ versionText CONSTANT FINAL)
  Q_PROPERTY(QString purpose READ purpose CONSTANT FINAL)

 public:
  explicit AboutPresenter(QString version, QObject* parent = nullptr);

  [[nodiscard]] QString versionText() const;
  [[nodiscard]] QString purpose() const;

 private:
  QString version_;
};

}  // namespace quillmere
