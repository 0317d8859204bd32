// The applications as a list of rows, in the state's order, each kept for as long as its application is listed.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "runtime/Observable.h"
#include "views/mixer/AppRowPresenter.h"
#include "views/shared/KeyedListModel.h"

namespace quillmere {

class MixerState;
class ViewSettings;

/// [main]
class AppRowModel final : public KeyedListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The list belongs to its page")

 public:
  enum class Filter {
    live,  ///< Only what sounds, with short lists of tabs: the popover.
    all,   ///< Everything known: the main window.
  };
  enum Role { RowRole = Qt::UserRole + 1 };

  /// The settings outlive the model.
  AppRowModel(std::shared_ptr<MixerState> state, ViewSettings& settings, Filter filter, QObject* parent = nullptr);
  ~AppRowModel() override;

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  [[nodiscard]] AppRowPresenter* row(int row) const { return rows_[static_cast<std::size_t>(row)]; }

 protected:
  void insertedAt(int at, const std::string& key) override;
  void removedAt(int at) override;
  void moved(int from, int to) override;

 private:
  using AppsByID = std::unordered_map<std::string_view, const AudioApp*>;

  void refreshApps();
  void refreshTabs();
  void refreshScroll();
  void showTabs(AppRowPresenter& row) const;

  std::shared_ptr<MixerState> state_;
  ViewSettings& settings_;
  Filter filter_;
  /// Children of the model: what has no parent, a scene may take for its own.
  std::vector<AppRowPresenter*> rows_;
  /// The state's applications while the rows are brought into step with them.
  AppsByID apps_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
