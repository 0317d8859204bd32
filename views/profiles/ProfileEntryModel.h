// The applications of a profile that is being edited. A profile may hold thousands, and one twice: rows go by position.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <optional>
#include <string>
#include <vector>

#include "core/AudioApp.h"

namespace quillmere {

/// [main] A row that is not there changes nothing.
class ProfileEntryModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The entries belong to the editor")
  Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

 public:
  enum Role {
    NameRole = Qt::UserRole + 1,
    IconSourceRole,
    GainRole,
    PercentTextRole,
    MutedRole,
    MuteSymbolRole,
    MuteTipRole,
    RoutedRole,
    RouteSymbolRole,
  };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] int count() const { return static_cast<int>(apps_.size()); }
  [[nodiscard]] const std::vector<AudioApp>& apps() const { return apps_; }
  /// Replaces all of them; nobody has edited them.
  void setApps(std::vector<AudioApp> apps);
  void append(AudioApp app);
  /// The device that the row is pinned to; absent too where there is no such row.
  [[nodiscard]] std::optional<std::string> route(int row) const;
  void setRoute(int row, std::optional<std::string> deviceUID);

  Q_INVOKABLE void setGain(int row, double gain);
  Q_INVOKABLE void toggleMute(int row);
  Q_INVOKABLE void remove(int row);

 Q_SIGNALS:
  void countChanged();
  /// Something was edited.
  void edited();

 private:
  [[nodiscard]] bool isEntry(int row) const { return row >= 0 && row < count(); }
  [[nodiscard]] AudioApp& at(int row) { return apps_[static_cast<std::size_t>(row)]; }
  void tell(int row, const QList<int>& roles);

  std::vector<AudioApp> apps_;
};

}  // namespace quillmere
