// The About panel.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

namespace quillmere {

/// [main] One at a time: a second wish brings the first one's panel to the front.
class AboutPanel final : public QObject {
  Q_OBJECT

 public:
  void show(const QString& version);
  [[nodiscard]] bool isShown() const { return !panel_.isNull(); }

 Q_SIGNALS:
  void closed();

 private:
  QPointer<QMessageBox> panel_;
};

}  // namespace quillmere
