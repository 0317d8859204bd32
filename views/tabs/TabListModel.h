// A browser's open tabs as a list of rows: the active ones first, then by title.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <functional>
#include <limits>
#include <vector>

#include "integrations/BrowserTab.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

/// The letter on a tab's tile: the first one of the address's host, without "www."; "?" where there is no host.
[[nodiscard]] QString tabLetter(const std::string& urlString);

/// The title as a row shows it: on one line, without control characters, and cut in the middle where it is endless.
[[nodiscard]] QString tabTitle(const std::string& title);

/// [main]
class TabListModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Tab lists belong to their rows")
  Q_PROPERTY(QString countText READ countText NOTIFY tabsChanged)
  Q_PROPERTY(QString openText READ openText NOTIFY tabsChanged)
  Q_PROPERTY(QString moreText READ moreText NOTIFY tabsChanged)
  Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY tabsChanged)

 public:
  enum Role { TitleRole = Qt::UserRole + 1, LetterRole, ActiveRole };
  using Activate = std::function<void(const BrowserTab& tab)>;

  static constexpr int noLimit = std::numeric_limits<int>::max();
  /// How many rows the popover's list shows.
  static constexpr int compactLimit = 8;

  /// `rowLimit` tabs at most become rows.
  TabListModel(int rowLimit, Activate activate, QObject* parent = nullptr);

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  void setTabs(std::vector<BrowserTab> tabs);
  /// Those that are rows, in their order.
  [[nodiscard]] const std::vector<BrowserTab>& rows() const { return rows_; }
  /// "3 tabs".
  [[nodiscard]] QString countText() const;
  /// "3 tabs open".
  [[nodiscard]] QString openText() const;
  /// "+ 4 more" while there are more tabs than rows, else empty.
  [[nodiscard]] QString moreText() const;
  [[nodiscard]] bool isEmpty() const { return tabCount_ == 0; }

  /// Brings the row's tab to the front.
  Q_INVOKABLE void activate(int row);

 Q_SIGNALS:
  void tabsChanged();

 protected:
  void insertedAt(int row, const std::string& key) override;
  void removedAt(int row) override;
  void moved(int from, int to) override;

 private:
  struct Shown {
    QString title;
    QString letter;
  };

  int rowLimit_;
  Activate activate_;
  int tabCount_ = 0;
  std::vector<BrowserTab> rows_;
  /// What each row shows, in their order.
  std::vector<Shown> shown_;
};

}  // namespace quillmere
