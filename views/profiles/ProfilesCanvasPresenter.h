// The profiles page: the active profile, the list of all, and the editor of the selected one.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "core/Uuid.h"
#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/profiles/ProfileEditorPresenter.h"
#include "views/profiles/ProfileListModel.h"

namespace quillmere {

class MixerState;

/// [main] Lives as long as its page shows. The first profile is selected at first, if there is one.
class ProfilesCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(bool anyActive READ anyActive NOTIFY heroChanged FINAL)
  Q_PROPERTY(QString heroTitle READ heroTitle NOTIFY heroChanged FINAL)
  Q_PROPERTY(QString heroDetail READ heroDetail NOTIFY heroChanged FINAL)
  Q_PROPERTY(bool anySelected READ anySelected NOTIFY selectionChanged FINAL)
  Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged FINAL)
  Q_PROPERTY(quillmere::ProfileListModel* profiles READ profiles CONSTANT FINAL)
  Q_PROPERTY(quillmere::ProfileEditorPresenter* editor READ editor CONSTANT FINAL)

 public:
  explicit ProfilesCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  /// Whether the profile that was applied last is still there.
  [[nodiscard]] bool anyActive() const;
  [[nodiscard]] QString heroTitle() const;
  [[nodiscard]] QString heroDetail() const;
  [[nodiscard]] bool anySelected() const { return selected_.has_value(); }
  /// -1 for none.
  [[nodiscard]] int selectedRow() const;
  [[nodiscard]] ProfileListModel* profiles() { return &profiles_; }
  [[nodiscard]] ProfileEditorPresenter* editor() { return &editor_; }

  /// Unsaved changes of the profile that was selected are dropped. A row that is not there changes nothing.
  Q_INVOKABLE void select(int row);
  /// Saves the present mixer under the next name, and selects it once it is there.
  Q_INVOKABLE void create();

 Q_SIGNALS:
  void heroChanged();
  void selectionChanged();

 private:
  [[nodiscard]] const Profile* active() const;
  void followProfiles();
  void selectID(std::optional<Uuid> id);

  std::shared_ptr<MixerState> state_;
  ProfileListModel profiles_;
  ProfileEditorPresenter editor_;
  std::optional<Uuid> selected_;
  std::size_t countBefore_ = 0;
  /// A profile of ours is on its way into the list.
  bool awaitsCreated_ = false;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
