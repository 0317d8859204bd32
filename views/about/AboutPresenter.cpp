// What the About panel says.
#include "views/about/AboutPresenter.h"

#include <utility>

namespace quillmere {

AboutPresenter::AboutPresenter(QString version, QObject* parent) : QObject(parent), version_(std::move(version)) {}

QString AboutPresenter::versionText() const { return tr("Version %1").arg(version_); }

QString AboutPresenter::purpose() const { return tr("A volume, a mute and an output for every application."); }

}  // namespace quillmere
