// Sorts a browser's tabs and makes rows of them.
#include "views/tabs/TabListModel.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "core/OneLine.h"
#include "core/Shortened.h"
#include "core/TextOrder.h"

namespace quillmere {

namespace {

/// Browsers hand on these as they were written, behind the host; a strict reader wants them encoded.
QString withEncodedTail(QString address) {
  static const QRegularExpression beginning(QStringLiteral("(?<![:/])[/?#]"));
  const auto tail = address.indexOf(beginning);
  if (tail < 0) return address;
  QString encoded;
  for (const auto character : QStringView(address).mid(tail)) {
    if (QStringView(u"|{}^`\\[]\"'<>").contains(character)) {
      encoded += QStringLiteral("%") + QString::number(character.unicode(), 16).toUpper();
    } else {
      encoded += character;
    }
  }
  return address.left(tail) + encoded;
}

}  // namespace

QString tabLetter(const std::string& urlString) {
  const auto address = shortenedAddress(urlString, longestShownAddress);
  const auto text = QString::fromUtf8(address.data(), static_cast<qsizetype>(address.size()));
  const QUrl url(withEncodedTail(text), QUrl::StrictMode);
  const auto host = url.host().toLower().remove(QStringLiteral("www."));
  if (!url.isValid() || host.isEmpty()) return QStringLiteral("?");
  QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, host);
  return host.left(letters.toNextBoundary()).toUpper();
}

QString tabTitle(const std::string& title) {
  return QString::fromStdString(oneLine(shortened(title, longestShownTitle)));
}

TabListModel::TabListModel(int rowLimit, Activate activate, QObject* parent)
    : KeyedListModel(parent), rowLimit_(rowLimit), activate_(std::move(activate)) {}

QVariant TabListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  switch (role) {
    case TitleRole:
      return shown_[row].title;
    case LetterRole:
      return shown_[row].letter;
    case ActiveRole:
      return rows_[row].isActive;
    default:
      return {};
  }
}

QHash<int, QByteArray> TabListModel::roleNames() const {
  return {{TitleRole, "title"}, {LetterRole, "letter"}, {ActiveRole, "active"}};
}

void TabListModel::setTabs(std::vector<BrowserTab> tabs) {
  std::ranges::stable_sort(tabs, [](const BrowserTab& left, const BrowserTab& right) {
    if (left.isActive != right.isActive) return left.isActive;
    return compareNames(left.title, right.title) < 0;
  });
  const bool countChanges = std::exchange(tabCount_, static_cast<int>(tabs.size())) != static_cast<int>(tabs.size());
  if (tabCount_ > rowLimit_) tabs.resize(static_cast<std::size_t>(rowLimit_));

  std::vector<std::string> wanted;
  wanted.reserve(tabs.size());
  for (const auto& tab : tabs) wanted.push_back(tab.id);
  arrange(wanted);
  auto now = tabs.begin();
  for (int row = 0; row < count(); ++row) {
    const auto at = static_cast<std::size_t>(row);
    // Rows are in the order of the tabs, but for an id that comes again.
    while (now->id != keys()[at]) ++now;
    if (rows_[at] == *now) continue;
    // Titles that count something change with each poll; addresses stay.
    if (rows_[at].urlString != now->urlString) shown_[at].letter = tabLetter(now->urlString);
    shown_[at].title = tabTitle(now->title);
    rows_[at] = *now;
    Q_EMIT dataChanged(index(row), index(row));
  }
  if (countChanges) Q_EMIT tabsChanged();
}

QString TabListModel::countText() const { return tr("%n tabs", nullptr, tabCount_); }

QString TabListModel::openText() const { return tr("%n tabs open", nullptr, tabCount_); }

QString TabListModel::moreText() const {
  return tabCount_ > rowLimit_ ? tr("+ %n more", nullptr, tabCount_ - rowLimit_) : QString();
}

void TabListModel::activate(int row) {
  if (row < 0 || row >= count()) return;
  const auto tab = rows_[static_cast<std::size_t>(row)];
  activate_(tab);
}

void TabListModel::insertedAt(int row, const std::string& key) {
  BrowserTab tab;
  tab.id = key;
  rows_.insert(rows_.begin() + row, std::move(tab));
  shown_.insert(shown_.begin() + row, {QString(), tabLetter({})});
}

void TabListModel::removedAt(int row) {
  rows_.erase(rows_.begin() + row);
  shown_.erase(shown_.begin() + row);
}

void TabListModel::moved(int from, int to) {
  auto tab = std::move(rows_[static_cast<std::size_t>(from)]);
  rows_.erase(rows_.begin() + from);
  rows_.insert(rows_.begin() + to, std::move(tab));
  auto shown = std::move(shown_[static_cast<std::size_t>(from)]);
  shown_.erase(shown_.begin() + from);
  shown_.insert(shown_.begin() + to, std::move(shown));
}

}  // namespace quillmere
