// One of Auto-Duck's two lists of applications: its members, and below them those of its defaults that are off.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/DuckRule.h"
#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/shared/AppNames.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

/// [main] A row keeps its identity when it is switched on or off and moves.
class DuckListModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The lists belong to their page")
  Q_PROPERTY(QString countText READ countText NOTIFY countTextChanged FINAL)

 public:
  enum Role { NameRole = Qt::UserRole + 1, BundleIDRole, IconSourceRole, OnRole, StartsDefaultsRole };
  using List = std::set<std::string> DuckRule::*;

  /// `list` is the part of the rule that is shown, `defaults` (which outlives this) what it starts out with.
  DuckListModel(const ViewServices& services, List list, const std::set<std::string>& defaults,
                QObject* parent = nullptr);

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  /// How many applications are on the list; defaults that are off don't count.
  [[nodiscard]] QString countText() const;
  [[nodiscard]] const std::set<std::string>& members() const;
  void add(const std::string& bundleID);

  /// Puts the row's application on the list or takes it off; a row that is not there changes nothing.
  Q_INVOKABLE void setOn(int row, bool on);

 Q_SIGNALS:
  void countTextChanged();

 protected:
  void insertedAt(int row, const std::string& key) override;
  void removedAt(int row) override;
  void moved(int from, int to) override;

 private:
  struct Row {
    std::string name;
    bool isOn = false;
    /// Whether it is the first of the defaults that are off.
    bool startsDefaults = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  void refresh();
  void set(const std::string& bundleID, bool on);

  std::shared_ptr<MixerState> state_;
  AppNames names_;
  List list_;
  const std::set<std::string>& defaults_;
  std::vector<Row> rows_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
