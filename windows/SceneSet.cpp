// The window system on Qt.
#include "shell/QtWindowSystem.h"

#include <malloc.h>

#include <QApplication>
#include <QMessageBox>
#include <utility>

#include "shell/BrandIconImage.h"
#include "shell/VersionOrder.h"

namespace quillmere {

namespace {
/// A window closed by mistake comes back at once; after this its memory goes back.
constexpr auto keepHidden = std::chrono::seconds(20);
}  // namespace

QtWindowSystem::QtWindowSystem(const Runtime& runtime) : runtime_(runtime) {}

QtWindowSystem::~QtWindowSystem() = default;

Scene& QtWindowSystem::add(const std::string& identifier, WindowFactory factory) {
  auto scene = std::make_unique<Scene>(runtime_, std::move(factory), keepHidden);
  connect(scene.get(), &Scene::becameActive, this, [this, identifier] {
    for (const auto& observer : becameKey_) observer(identifier);
  });
  connect(scene.get(), &Scene::willClose, this, [this, identifier] {
    for (const auto& observer : willClose_) observer(identifier);
  });
  // The scene graph of a window is most of the program's memory: the allocator is asked to give it back.
  scene->onDropped([] { malloc_trim(0); });
  return *(scenes_[identifier] = std::move(scene));
}

std::vector<WindowInfo> QtWindowSystem::windows() const {
  std::vector<WindowInfo> result;
  for (const auto& [identifier, scene] : scenes_) {
    if (scene->window() != nullptr) result.push_back({identifier, scene->isVisible()});
  }
  return result;
}

bool QtWindowSystem::canOpen(const std::string& identifier) const { return scenes_.contains(identifier); }

void QtWindowSystem::open(const std::string& identifier) {
  if (const auto scene = scenes_.find(identifier); scene != scenes_.end()) scene->second->show();
}

void QtWindowSystem::close(const std::string& identifier) {
  const auto scene = scenes_.find(identifier);
  if (scene != scenes_.end() && scene->second->window() != nullptr) scene->second->window()->close();
}

void QtWindowSystem::orderFront(const std::string& identifier) {
  const auto scene = scenes_.find(identifier);
  if (scene != scenes_.end() && scene->second->isVisible()) scene->second->show();
}

void QtWindowSystem::activate() {
  for (const auto& [identifier, scene] : scenes_) {
    if (scene->isVisible()) scene->window()->requestActivate();
  }
}

void QtWindowSystem::showAboutPanel() {
  auto* panel = new QMessageBox;
  panel->setAttribute(Qt::WA_DeleteOnClose);
  panel->setWindowTitle(tr("About quillmere"));
  panel->setIconPixmap(BrandIconImage::dock(64, panel->devicePixelRatioF()));
  panel->setText(QStringLiteral("<b>quillmere</b>"));
  panel->setInformativeText(tr("Version %1\nA volume, a mute and an output for every application.")
                                .arg(QString::fromUtf8(appVersion().data(), static_cast<int>(appVersion().size()))));
  panel->setStandardButtons(QMessageBox::Close);
  panel->open();
}

void QtWindowSystem::terminate() {
  runtime_.main.post([] { QCoreApplication::exit(0); });
}

void QtWindowSystem::onWindowBecameKey(WindowObserver observer) { becameKey_.push_back(std::move(observer)); }

void QtWindowSystem::onWindowWillClose(WindowObserver observer) { willClose_.push_back(std::move(observer)); }

}  // namespace quillmere
