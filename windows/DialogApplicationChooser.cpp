// One dialogue at a time, which lives as long as it is open.
#include "windows/DialogApplicationChooser.h"

#include <QGuiApplication>
#include <QWindow>
#include <optional>
#include <string>
#include <utility>

namespace quillmere {

DialogApplicationChooser::~DialogApplicationChooser() { delete dialog_; }

void DialogApplicationChooser::choose(const ApplicationQuestion& question, Reply reply) {
  const auto earlier = std::exchange(reply_, std::move(reply));
  if (dialog_) {
    QMetaObject::invokeMethod(this, [earlier] { earlier(std::nullopt); }, Qt::QueuedConnection);
    dialog_->raise();
    dialog_->activateWindow();
    return;
  }
  dialog_ = new QFileDialog(nullptr, QString::fromStdString(question.title), folder_,
                            QString::fromStdString(question.filterName) + QStringLiteral(" (*.desktop)"));
  dialog_->setFileMode(QFileDialog::ExistingFile);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog_, &QDialog::finished, this, &DialogApplicationChooser::finish);
  // It belongs to the window that asks: it stays above it, and has to be answered first.
  dialog_->winId();
  dialog_->windowHandle()->setTransientParent(QGuiApplication::focusWindow());
  dialog_->open();
}

void DialogApplicationChooser::finish(int result) {
  const auto files = dialog_->selectedFiles();
  // What comes now is asked anew, though the dialogue goes a moment later.
  dialog_ = nullptr;
  const auto reply = std::exchange(reply_, {});
  if (result == QDialog::Accepted && !files.isEmpty()) {
    reply(files.front().toStdString());
  } else {
    reply(std::nullopt);
  }
}

}  // namespace quillmere
