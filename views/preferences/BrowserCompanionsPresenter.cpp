// Rows from what the system knows of browsers and the mixer of companions.
#include "views/preferences/BrowserCompanionsPresenter.h"

#include <algorithm>
#include <utility>

#include "integrations/CompanionSetUp.h"
#include "integrations/DesktopServices.h"
#include "state/MixerState.h"

namespace quillmere {

BrowserCompanionsPresenter::BrowserCompanionsPresenter(const ViewServices& services, QObject* parent)
    : QAbstractListModel(parent),
      setUp_(services.desktop.companionSetUp()),
      state_(services.state),
      ownVersion_(services.appVersion) {
  subscriptions_.push_back(setUp_.browsers().observe([this](const auto&) { update(); }));
  subscriptions_.push_back(state_->browserCompanions().observe([this](const auto&) { update(); }));
  update();
  setUp_.refresh();
}

int BrowserCompanionsPresenter::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant BrowserCompanionsPresenter::data(const QModelIndex& index, int role) const {
  if (index.row() < 0 || index.row() >= count()) return {};
  const auto& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case NameRole:
      return row.name;
    case StatusRole:
      return row.status;
    case ConnectedRole:
      return row.isConnected;
    case ActionRole:
      if (!row.hasHost) return tr("Set up");
      return row.canRemove ? tr("Remove") : QString();
    default:
      return {};
  }
}

QHash<int, QByteArray> BrowserCompanionsPresenter::roleNames() const {
  return {{NameRole, "name"}, {StatusRole, "status"}, {ConnectedRole, "isConnected"}, {ActionRole, "action"}};
}

QString BrowserCompanionsPresenter::hint() const {
  const bool isWaiting = std::ranges::any_of(rows_, [](const Row& row) { return row.hasHost && !row.isConnected; });
  const auto folder = setUp_.companionFolder();
  if (!isWaiting || folder.empty()) return {};
  return tr("To load the companion: open %1 in the browser, turn on “Developer mode”, press “Load unpacked” and choose "
            "the "
            "folder %2.")
      .arg(QStringLiteral("chrome://extensions"), QString::fromStdString(folder));
}

void BrowserCompanionsPresenter::act(int row) {
  if (row < 0 || row >= count()) return;
  const auto& browser = rows_[static_cast<std::size_t>(row)];
  if (!browser.hasHost) {
    setUp_.install(browser.key);
  } else if (browser.canRemove) {
    setUp_.remove(browser.key);
  }
}

BrowserCompanionsPresenter::Row BrowserCompanionsPresenter::rowOf(const InstalledBrowser& browser) const {
  Row row{browser.key, QString::fromStdString(browser.name), {}, browser.hasHost, !browser.isSystems};
  row.status = browser.hasHost ? tr("Waits for its companion") : tr("Not set up");
  for (const auto& companion : state_->browserCompanions().get()) {
    if (companion.browser != browser.key) continue;
    row.isConnected = true;
    row.status = tr("Connected");
    for (const auto& version : {companion.version, companion.hostVersion}) {
      if (version == ownVersion_) continue;
      row.status = tr("Connected, in another version: %1").arg(QString::fromStdString(version));
      return row;
    }
  }
  return row;
}

void BrowserCompanionsPresenter::update() {
  std::vector<Row> rows;
  for (const auto& browser : setUp_.browsers().get()) rows.push_back(rowOf(browser));
  const auto before = hint();
  if (std::ranges::equal(rows, rows_, {}, &Row::key, &Row::key)) {
    for (std::size_t at = 0; at < rows.size(); ++at) {
      if (rows[at] == rows_[at]) continue;
      rows_[at] = std::move(rows[at]);
      const auto changed = index(static_cast<int>(at));
      Q_EMIT dataChanged(changed, changed);
    }
  } else {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    Q_EMIT countChanged();
  }
  if (hint() != before) Q_EMIT hintChanged();
}

}  // namespace quillmere
