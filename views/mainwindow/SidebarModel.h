// Some of the main window's sections as entries of its sidebar: title, symbol, badge, which one shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <functional>
#include <vector>

#include "views/mainwindow/Section.h"

namespace quillmere {

/// [main]
class SidebarModel final : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")

 public:
  enum Role { SectionRole = Qt::UserRole + 1, TitleRole, SymbolRole, SelectedRole, BadgeRole };

  explicit SidebarModel(std::vector<Section> sections, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  void setSelected(Section section);
  /// The number beside "Mixer": 0 shows none.
  void setLiveCount(int count);

 private:
  void tell(Section section, Role role);

  std::vector<Section> sections_;
  Section selected_ = Section::mixer;
  int liveCount_ = 0;
};

}  // namespace quillmere
