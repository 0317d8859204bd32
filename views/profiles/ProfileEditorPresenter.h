// The editor of one profile: it works on a copy, which only saving writes back.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "core/Profile.h"
#include "core/Uuid.h"
#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/picker/AppPickerPresenter.h"
#include "views/profiles/ProfileEntryModel.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class MixerState;

/// [main] What others do to the stored profile meanwhile doesn't reach the copy.
class ProfileEditorPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(QString title READ title NOTIFY draftChanged FINAL)
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY draftChanged FINAL)
  Q_PROPERTY(QString countText READ countText NOTIFY draftChanged FINAL)
  Q_PROPERTY(bool dirty READ isDirty NOTIFY dirtyChanged FINAL)
  Q_PROPERTY(QString saveText READ saveText NOTIFY dirtyChanged FINAL)
  Q_PROPERTY(bool active READ isActive NOTIFY activeChanged FINAL)
  Q_PROPERTY(quillmere::ProfileEntryModel* entries READ entries CONSTANT FINAL)
  Q_PROPERTY(quillmere::MenuModel* routeMenu READ routeMenu CONSTANT FINAL)
  Q_PROPERTY(quillmere::AppPickerPresenter* picker READ picker CONSTANT FINAL)

 public:
  explicit ProfileEditorPresenter(const ViewServices& services, QObject* parent = nullptr);

  /// Takes a copy of another profile, or of none; what was not saved is dropped.
  void edit(std::optional<Uuid> id);

  /// The copy's name, or "Untitled".
  [[nodiscard]] QString title() const;
  [[nodiscard]] QString name() const { return QString::fromStdString(draft_.name); }
  void setName(const QString& name);
  [[nodiscard]] QString countText() const { return QString::number(entries_.count()); }
  /// Whether anything was edited since the copy was taken or saved.
  [[nodiscard]] bool isDirty() const { return isDirty_; }
  [[nodiscard]] QString saveText() const;
  /// Whether the profile is the one that was applied last.
  [[nodiscard]] bool isActive() const;
  [[nodiscard]] ProfileEntryModel* entries() { return &entries_; }
  /// The outputs for the row that was last told to fillRoutes().
  [[nodiscard]] MenuModel* routeMenu() { return &routeMenu_; }
  [[nodiscard]] AppPickerPresenter* picker() { return &picker_; }

  Q_INVOKABLE void syncFromMixer();
  /// Opens the picker for another entry.
  Q_INVOKABLE void addApp();
  Q_INVOKABLE void fillRoutes(int row);
  /// Deletes the stored profile, at once.
  Q_INVOKABLE void remove();
  /// Takes the stored profile again.
  Q_INVOKABLE void discard();
  /// Applies the stored profile, not the copy.
  Q_INVOKABLE void apply();
  Q_INVOKABLE void save();

 Q_SIGNALS:
  void draftChanged();
  void dirtyChanged();
  void activeChanged();

 private:
  void load();
  void setDirty(bool dirty);
  void noteEdit();

  std::shared_ptr<MixerState> state_;
  std::optional<Uuid> profileID_;
  /// Without its applications, which are in entries_.
  Profile draft_;
  ProfileEntryModel entries_;
  bool isDirty_ = false;
  MenuModel routeMenu_;
  AppPickerPresenter picker_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
