// The browsers that could show their tabs in the mixer: what each of them still needs, and the button that gives it.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "platform/BrowserSetUp.h"
#include "runtime/Observable.h"
#include "views/ViewServices.h"

namespace quillmere {

class CompanionSetUp;
class MixerState;

/// [main] A row a browser. Looks for browsers when it is made.
class BrowserCompanionsPresenter final : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
  Q_PROPERTY(QString hint READ hint NOTIFY hintChanged FINAL)

 public:
  enum Role { NameRole = Qt::UserRole + 1, StatusRole, ConnectedRole, ActionRole };

  explicit BrowserCompanionsPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
  /// How the companion gets into a browser; empty while no browser waits for it.
  [[nodiscard]] QString hint() const;

  /// What the row's button says; nothing where it says nothing, as beside what the system's packages have set up.
  Q_INVOKABLE void act(int row);

 Q_SIGNALS:
  void countChanged();
  void hintChanged();

 private:
  struct Row {
    std::string key;
    QString name;
    QString status;
    bool hasHost = false;
    bool canRemove = true;
    bool isConnected = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  void update();
  [[nodiscard]] Row rowOf(const InstalledBrowser& browser) const;

  CompanionSetUp& setUp_;
  std::shared_ptr<MixerState> state_;
  const std::string ownVersion_;
  std::vector<Row> rows_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
