// The entries of a menu as data: titles, marks and dividers, with what each entry does.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <functional>
#include <vector>

namespace quillmere {

struct MenuEntry {
  QString title;
  bool checked = false;
  bool isDivider = false;
  std::function<void()> action;

  static MenuEntry divider() { return {{}, false, true, {}}; }
};

/// [main]
class MenuModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Menus belong to their presenters")
  Q_PROPERTY(bool anyChecked READ anyChecked NOTIFY anyCheckedChanged FINAL)

 public:
  enum Role { TitleRole = Qt::UserRole + 1, CheckedRole, DividerRole };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  /// Entries whose titles stay where they are stay as rows.
  void setEntries(std::vector<MenuEntry> entries);
  [[nodiscard]] const std::vector<MenuEntry>& entries() const { return entries_; }
  [[nodiscard]] bool anyChecked() const { return anyChecked_; }
  /// Does what the entry says; a divider or a row that is not there does nothing.
  Q_INVOKABLE void trigger(int row);

 Q_SIGNALS:
  void anyCheckedChanged();

 private:
  std::vector<MenuEntry> entries_;
  bool anyChecked_ = false;
};

}  // namespace quillmere
