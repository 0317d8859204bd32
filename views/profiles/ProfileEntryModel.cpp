// The applications of a profile that is being edited.
#include "views/profiles/ProfileEntryModel.h"

#include <QUrl>
#include <utility>

#include "views/shared/AppIconProvider.h"
#include "views/shared/PercentText.h"

namespace quillmere {

int ProfileEntryModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant ProfileEntryModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& app = apps_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return QString::fromStdString(app.name);
    case IconSourceRole:
      return AppIconProvider::urlFor(app.bundleID);
    case GainRole:
      return static_cast<double>(app.gain);
    case PercentTextRole:
      return percentText(app.gain);
    case MutedRole:
      return app.muted;
    case MuteSymbolRole:
      return app.muted ? QStringLiteral("speaker.slash.fill") : QStringLiteral("speaker.wave.2");
    case MuteTipRole:
      return app.muted ? tr("Unmute") : tr("Mute");
    case RoutedRole:
      return app.routedDeviceUID.has_value();
    case RouteSymbolRole:
      return app.routedDeviceUID ? QStringLiteral("headphones.circle.fill") : QStringLiteral("headphones");
    default:
      return {};
  }
}

QHash<int, QByteArray> ProfileEntryModel::roleNames() const {
  return {{NameRole, "name"},       {IconSourceRole, "iconSource"},   {GainRole, "gain"},
          {MutedRole, "muted"},     {PercentTextRole, "percentText"}, {MuteSymbolRole, "muteSymbol"},
          {MuteTipRole, "muteTip"}, {RoutedRole, "routed"},           {RouteSymbolRole, "routeSymbol"}};
}

void ProfileEntryModel::setApps(std::vector<AudioApp> apps) {
  const bool isAsMany = apps.size() == apps_.size();
  beginResetModel();
  apps_ = std::move(apps);
  endResetModel();
  if (!isAsMany) Q_EMIT countChanged();
}

void ProfileEntryModel::append(AudioApp app) {
  beginInsertRows({}, count(), count());
  apps_.push_back(std::move(app));
  endInsertRows();
  Q_EMIT countChanged();
  Q_EMIT edited();
}

std::optional<std::string> ProfileEntryModel::route(int row) const {
  return isEntry(row) ? apps_[static_cast<std::size_t>(row)].routedDeviceUID : std::nullopt;
}

void ProfileEntryModel::setRoute(int row, std::optional<std::string> deviceUID) {
  if (!isEntry(row)) return;
  at(row).routedDeviceUID = std::move(deviceUID);
  tell(row, {RoutedRole, RouteSymbolRole});
}

void ProfileEntryModel::setGain(int row, double gain) {
  if (!isEntry(row)) return;
  at(row).gain = static_cast<float>(gain);
  tell(row, {GainRole, PercentTextRole});
}

void ProfileEntryModel::toggleMute(int row) {
  if (!isEntry(row)) return;
  at(row).muted = !at(row).muted;
  tell(row, {MutedRole, MuteSymbolRole, MuteTipRole});
}

void ProfileEntryModel::remove(int row) {
  if (!isEntry(row)) return;
  beginRemoveRows({}, row, row);
  apps_.erase(apps_.begin() + row);
  endRemoveRows();
  Q_EMIT countChanged();
  Q_EMIT edited();
}

void ProfileEntryModel::tell(int row, const QList<int>& roles) {
  Q_EMIT dataChanged(index(row), index(row), roles);
  Q_EMIT edited();
}

}  // namespace quillmere
