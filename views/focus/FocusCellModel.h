// Who may keep playing during focus: nobody, the listed applications and the candidates, by name.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/shared/AppNames.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

/// [main] The first cell stands for nobody; its key is the empty text.
class FocusCellModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The cells belong to their page")

 public:
  enum Role {
    NameRole = Qt::UserRole + 1,
    IconSourceRole,
    SelectedRole,
    CanRemoveRole,
    TipRole,
    IsNobodyRole,
  };

  explicit FocusCellModel(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  /// Every application that has a cell.
  [[nodiscard]] std::set<std::string> candidates() const;
  /// Makes it a candidate and the one that keeps playing.
  void add(const std::string& bundleID);

  /// Chooses the cell's application, or nobody where it is the chosen one.
  Q_INVOKABLE void tap(int row);
  /// Takes it from the candidates. A listed application keeps its cell.
  Q_INVOKABLE void remove(int row);

 protected:
  void insertedAt(int row, const std::string& key) override;
  void removedAt(int row) override;
  void moved(int from, int to) override;

 private:
  struct Row {
    std::string name;
    bool isSelected = false;
    bool canRemove = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  void refresh();
  [[nodiscard]] bool isCell(int row) const { return row >= 0 && row < count(); }

  std::shared_ptr<MixerState> state_;
  AppNames names_;
  std::vector<Row> rows_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
