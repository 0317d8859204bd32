// Entries and their keys.
#include "windows/ProgramMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>

namespace quillmere {

namespace {

/// lupdate finds them here.
QString text(const char* source) { return QCoreApplication::translate("ProgramMenu", source); }

QAction* add(QMenu& menu, const char* source, const QKeySequence& keys, std::function<void()> perform) {
  auto* action = menu.addAction(text(source));
  action->setShortcut(keys);
  QObject::connect(action, &QAction::triggered, action, std::move(perform));
  return action;
}

}  // namespace

ProgramMenu::ProgramMenu(const ProgramMenuIntents& intents) {
  // Its keys are the system's command key, as the toolkit calls that one there.
  auto& window = *bar_.addMenu(text(QT_TRANSLATE_NOOP("ProgramMenu", "Window")));
  add(window, QT_TRANSLATE_NOOP("ProgramMenu", "About quillmere"), {}, intents.showAboutPanel)
      ->setMenuRole(QAction::AboutRole);
  add(window, QT_TRANSLATE_NOOP("ProgramMenu", "quillmere Window"), Qt::CTRL | Qt::Key_0, intents.openMainWindow)
      ->setMenuRole(QAction::NoRole);
  add(window, QT_TRANSLATE_NOOP("ProgramMenu", "Settings…"), Qt::CTRL | Qt::Key_Comma, intents.openSettings)
      ->setMenuRole(QAction::PreferencesRole);
}

}  // namespace quillmere
