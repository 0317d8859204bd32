// The saved profiles as tiles: one of them is selected, one perhaps active.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Profile.h"
#include "runtime/Observable.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

class MixerState;

/// [main]
class ProfileListModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")

 public:
  enum Role { NameRole = Qt::UserRole + 1, SizeTextRole, ActiveRole, SelectedRole };

  explicit ProfileListModel(std::shared_ptr<MixerState> state, QObject* parent = nullptr);

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  /// Marks one tile; absent or unknown, none.
  void setSelected(std::optional<Uuid> id);
  [[nodiscard]] std::optional<Uuid> idAt(int row) const;

  // A row that is not there does nothing.
  Q_INVOKABLE void apply(int row);
  Q_INVOKABLE void duplicate(int row);
  Q_INVOKABLE void remove(int row);

 protected:
  void insertedAt(int row, const std::string& key) override;
  void removedAt(int row) override;
  void moved(int from, int to) override;

 private:
  struct Row {
    std::string name;
    std::size_t appCount = 0;
    bool isActive = false;
    bool isSelected = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  void refresh();

  std::shared_ptr<MixerState> state_;
  std::optional<Uuid> selected_;
  std::vector<Row> rows_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
