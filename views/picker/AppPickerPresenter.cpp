// The picker of applications.
#include "views/picker/AppPickerPresenter.h"

#include <utility>

#include "integrations/AppDirectory.h"
#include "integrations/DesktopServices.h"

namespace quillmere {

AppPickerPresenter::AppPickerPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      directory_(services.desktop.apps()),
      runtime_(services.runtime),
      subscription_(directory_.revision().observe([this](const auto&) {
        if (!isOpen_) return;
        apps_.setRunning(directory_.runningApps());
        Q_EMIT listChanged();
      })) {}

AppPickerPresenter::~AppPickerPresenter() {
  scan_.cancel();
  dialogue_.cancel();
}

void AppPickerPresenter::show(std::set<std::string> existing, OnPick onPick) {
  close();
  setQuery({});
  onPick_ = std::move(onPick);
  apps_.setExisting(std::move(existing));
  apps_.setInstalled({});
  apps_.setRunning(directory_.runningApps());
  isScanning_ = true;
  scan_ = startTask(runtime_.main, [this](TaskContext& task) -> Async<void> {
    // Without a picker, nothing of it may be touched: those that go cancel their tasks.
    if (task.isCancelled()) co_return;
    auto installed = co_await directory_.installedApps();
    if (task.isCancelled()) co_return;
    isScanning_ = false;
    apps_.setInstalled(installed);
    Q_EMIT listChanged();
  });
  isOpen_ = true;
  Q_EMIT listChanged();
  Q_EMIT openChanged();
}

void AppPickerPresenter::setQuery(const QString& query) {
  if (query_ == query) return;
  query_ = query;
  apps_.setQuery(query);
  Q_EMIT queryChanged();
  Q_EMIT listChanged();
}

QString AppPickerPresenter::resultText() const { return tr("%n results", nullptr, apps_.count()); }

QString AppPickerPresenter::emptyText() const {
  return isScanning_ ? tr("Scanning Applications…") : tr("No apps match.");
}

void AppPickerPresenter::pick(int row) {
  if (!isOpen_ || row < 0 || row >= apps_.count() || apps_.isAdded(row)) return;
  // Closing changes the list.
  finish(InstalledApp(apps_.at(row)));
}

void AppPickerPresenter::browse() {
  if (!isOpen_) return;
  dialogue_.cancel();
  dialogue_ = startTask(runtime_.main, [this](TaskContext& task) -> Async<void> {
    if (task.isCancelled()) co_return;
    ApplicationQuestion question{tr("Add an app").toStdString(), tr("Applications").toStdString()};
    const auto app = co_await directory_.browse(std::move(question));
    if (task.isCancelled() || !app) co_return;
    finish(*app);
  });
}

void AppPickerPresenter::close() {
  if (!isOpen_) return;
  scan_.cancel();
  dialogue_.cancel();
  isScanning_ = false;
  isOpen_ = false;
  onPick_ = {};
  Q_EMIT openChanged();
}

void AppPickerPresenter::finish(const InstalledApp& app) {
  if (const auto onPick = onPick_) onPick(app);
  close();
}

}  // namespace quillmere
