// One dialogue at a time, which lives as long as it is open.
#include "windows/DialogApplicationChooser.h"

#include <optional>
#include <string>
#include <utility>

namespace quillmere {

DialogApplicationChooser::~DialogApplicationChooser() { delete dialog_; }

void DialogApplicationChooser::choose(const ApplicationQuestion& question, Reply reply) {
  if (dialog_) {
    QMetaObject::invokeMethod(this, [reply = std::move(reply)] { reply(std::nullopt); }, Qt::QueuedConnection);
    return;
  }
  dialog_ = new QFileDialog(nullptr, QString::fromStdString(question.title), folder_,
                            QString::fromStdString(question.filterName) + QStringLiteral(" (*.desktop)"));
  dialog_->setFileMode(QFileDialog::ExistingFile);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog_, &QDialog::finished, this, [dialog = dialog_, reply = std::move(reply)](int result) {
    const auto files = dialog->selectedFiles();
    if (result == QDialog::Accepted && !files.isEmpty()) {
      reply(files.front().toStdString());
    } else {
      reply(std::nullopt);
    }
  });
  dialog_->open();
}

}  // namespace quillmere
