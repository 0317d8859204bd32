// What the picker lists: the running applications, and behind them the installed ones, as far as both match a query.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QString>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "integrations/InstalledApp.h"

namespace quillmere {

/// [main] What stays at both ends of the list stays as rows.
class AppPickerModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The list belongs to its picker")
  Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

 public:
  enum Role { HeadingRole = Qt::UserRole + 1, NameRole, BundleIDRole, IconSourceRole, AddedRole };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
  /// Applications that are marked as added.
  void setExisting(std::set<std::string> existing);
  void setRunning(const std::vector<InstalledApp>& running);
  void setInstalled(const std::vector<InstalledApp>& installed);
  /// Only what has the query in its name or its identifier, ignoring case, is listed; an empty one matches all.
  void setQuery(const QString& query);
  [[nodiscard]] bool isAdded(int row) const;
  /// `row` is one of the list's.
  [[nodiscard]] const InstalledApp& at(int row) const { return rows_[static_cast<std::size_t>(row)].entry->app; }

 Q_SIGNALS:
  void countChanged();

 private:
  struct Entry {
    InstalledApp app;
    // In lower case.
    QString name;
    QString bundleID;
  };
  using Entries = std::vector<std::shared_ptr<const Entry>>;
  struct Row {
    std::shared_ptr<const Entry> entry;
    bool isRunning = false;

    /// Whether both look the same in the list.
    [[nodiscard]] bool looksLike(const Row& other) const;
  };

  static Entries entriesOf(const std::vector<InstalledApp>& apps);
  [[nodiscard]] bool matches(const Entry& entry) const;
  /// The section's name over its first row, else empty.
  [[nodiscard]] QString headingOf(int row) const;
  void rearrange();

  Entries running_;
  Entries installed_;
  std::set<std::string> existing_;
  QString query_;
  std::vector<Row> rows_;
};

}  // namespace quillmere
