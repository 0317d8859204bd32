// The toolkit's own dialogue for an application's file, for desktops without a portal.
#pragma once

#include <QFileDialog>
#include <QObject>
#include <QPointer>

#include "platform/ApplicationChooser.h"

namespace quillmere {

/// [main]
class DialogApplicationChooser final : public QObject, public ApplicationChooser {
  Q_OBJECT

 public:
  /// @param folder  where the dialogue opens
  explicit DialogApplicationChooser(QString folder) : folder_(std::move(folder)) {}
  ~DialogApplicationChooser() override;

  void choose(const ApplicationQuestion& question, Reply reply) override;

 private:
  void finish(int result);

  QString folder_;
  QPointer<QFileDialog> dialog_;
  /// Whose the open dialogue is.
  Reply reply_;
};

}  // namespace quillmere
