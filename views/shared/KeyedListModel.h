// A list model whose rows keep their identity by a key: what changes is told as removals, moves and insertions only.
// Views can then animate rows and keep what they hold of them.
#pragma once

#include <QAbstractListModel>
#include <string>
#include <vector>

namespace quillmere {

/// [main]
class KeyedListModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int count() const { return static_cast<int>(keys_.size()); }
  [[nodiscard]] const std::vector<std::string>& keys() const { return keys_; }

 Q_SIGNALS:
  void countChanged();

 protected:
  /// Brings the rows into the order of `wanted`, whose later repetitions of a key are left out. Rows that keep their
  /// order relative to each other are not touched. Neighbours that come or go do so together.
  void arrange(const std::vector<std::string>& wanted);

  // The subclass keeps its rows in step. Called between the begin and the end of the change that views are told of.
  virtual void insertedAt(int row, const std::string& key) = 0;
  virtual void removedAt(int row) = 0;
  virtual void moved(int from, int to) = 0;

 private:
  using Keys = std::vector<std::string>::const_iterator;

  void dropRows(int first, int last);
  void addRows(int at, Keys first, Keys last);
  void moveRow(int from, int to);

  std::vector<std::string> keys_;
};

}  // namespace quillmere
