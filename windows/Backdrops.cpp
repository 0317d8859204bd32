// One for each screen.
#include "windows/Backdrops.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace quillmere {

void Backdrops::cover(const std::function<void(Backdrop& backdrop, QScreen& screen)>& prepare) {
  clear();
  for (auto* screen : QGuiApplication::screens()) {
    auto& backdrop = *backdrops_.emplace_back(std::make_unique<Backdrop>(*screen));
    prepare(backdrop, *screen);
    backdrop.show();
  }
}

void Backdrops::clear() {
  for (auto& backdrop : std::exchange(backdrops_, {})) {
    backdrop->hide();
    backdrop.release()->deleteLater();
  }
}

}  // namespace quillmere
