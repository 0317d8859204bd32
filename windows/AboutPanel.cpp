// The About panel, in the toolkit's own dress.
#include "windows/AboutPanel.h"

#include "windows/BrandIconImage.h"

namespace quillmere {

void AboutPanel::show(const QString& version) {
  if (panel_) {
    panel_->raise();
    panel_->activateWindow();
    return;
  }
  panel_ = new QMessageBox;
  panel_->setAttribute(Qt::WA_DeleteOnClose);
  panel_->setWindowTitle(tr("About quillmere"));
  panel_->setIconPixmap(BrandIconImage::dock(64, panel_->devicePixelRatioF()));
  panel_->setText(QStringLiteral("<b>quillmere</b>"));
  panel_->setInformativeText(tr("Version %1\nA volume, a mute and an output for every application.").arg(version));
  panel_->setStandardButtons(QMessageBox::Close);
  connect(panel_, &QObject::destroyed, this, [this] {
    panel_.clear();
    Q_EMIT closed();
  });
  panel_->open();
}

}  // namespace quillmere
