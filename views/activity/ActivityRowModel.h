// The applications as rows that are only looked at: name, icon, whether it sounds.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

class MixerState;

/// [main]
class ActivityRowModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The list belongs to its page")

 public:
  enum Role { NameRole = Qt::UserRole + 1, IconRole, LiveRole };

  explicit ActivityRowModel(std::shared_ptr<MixerState> state, QObject* parent = nullptr);

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 protected:
  void insertedAt(int row, const std::string& key) override;
  void removedAt(int row) override;
  void moved(int from, int to) override;

 private:
  struct Row {
    std::string name;
    bool isLive = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  void refresh();

  std::shared_ptr<MixerState> state_;
  std::vector<Row> rows_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
