// The picker of applications: a sheet with everything that runs or is installed, and a filter.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <functional>
#include <set>
#include <string>

#include "integrations/InstalledApp.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "runtime/Task.h"
#include "views/ViewServices.h"
#include "views/picker/AppPickerModel.h"

namespace quillmere {

class AppDirectory;

/// [main] One a page, opened again and again; each time it starts with an empty filter.
class AppPickerPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(bool open READ isOpen NOTIFY openChanged FINAL)
  Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged FINAL)
  Q_PROPERTY(quillmere::AppPickerModel* apps READ apps CONSTANT FINAL)
  Q_PROPERTY(QString resultText READ resultText NOTIFY listChanged FINAL)
  Q_PROPERTY(QString emptyText READ emptyText NOTIFY listChanged FINAL)

 public:
  using OnPick = std::function<void(const InstalledApp&)>;

  explicit AppPickerPresenter(const ViewServices& services, QObject* parent = nullptr);
  ~AppPickerPresenter() override;

  /// Opens the sheet: what is `existing` is marked and can't be picked. Running applications are there at once, the
  /// installed ones follow.
  void show(std::set<std::string> existing, OnPick onPick);

  [[nodiscard]] bool isOpen() const { return isOpen_; }
  [[nodiscard]] QString query() const { return query_; }
  void setQuery(const QString& query);
  [[nodiscard]] AppPickerModel* apps() { return &apps_; }
  [[nodiscard]] QString resultText() const;
  /// What stands in place of an empty list.
  [[nodiscard]] QString emptyText() const;

  /// Hands the row's application on and closes; one that is marked, or no row at all, does nothing.
  Q_INVOKABLE void pick(int row);
  /// Lets the user choose an application's file; what is chosen is handed on and closes the sheet.
  Q_INVOKABLE void browse();
  /// What still is on its way is dropped.
  Q_INVOKABLE void close();

 Q_SIGNALS:
  void openChanged();
  void queryChanged();
  void listChanged();

 private:
  void finish(const InstalledApp& app);

  AppDirectory& directory_;
  Runtime runtime_;
  AppPickerModel apps_;
  QString query_;
  bool isOpen_ = false;
  bool isScanning_ = false;
  OnPick onPick_;
  Task scan_;
  Task dialogue_;
  Subscription subscription_;
};

}  // namespace quillmere
