// What the main window shows around its canvas.
#include "views/mainwindow/MainWindowPresenter.h"

#include <utility>

#include "core/VersionOrder.h"
#include "state/MixerState.h"

namespace quillmere {

MainWindowPresenter::MainWindowPresenter(ViewServices services, QObject* parent)
    : QObject(parent),
      services_(std::move(services)),
      upperItems_({Section::mixer, Section::profiles, Section::activity, Section::duck, Section::focus}),
      lowerItems_({Section::settings}) {
  const auto& state = *services_.state;
  subscriptions_.push_back(state.liveBundleIDs().observe([this](const auto&) { refreshLive(); }));
  subscriptions_.push_back(state.isDucking().observe([this](bool) { Q_EMIT duckingTextChanged(); }));
  subscriptions_.push_back(state.latestVersion().observe([this](const auto&) { Q_EMIT updateTextChanged(); }));
  refreshLive();
}

MainWindowPresenter::~MainWindowPresenter() = default;

QUrl MainWindowPresenter::canvasSource() const {
  if (hidden_) return {};
  return QStringLiteral("qrc:/qt/qml/Quillmere/Views/%1.qml").arg(canvasOf(section_));
}

QObject* MainWindowPresenter::canvas() {
  if (!canvas_ && !hidden_) {
    canvas_ = makeCanvasPresenter(section_, services_).release();
    canvas_->setParent(this);
  }
  return canvas_;
}

QString MainWindowPresenter::liveText() const {
  return liveCount_ == 0 ? QString() : tr("%n sources active", nullptr, liveCount_);
}

QString MainWindowPresenter::duckingText() const {
  return *services_.state->isDucking() ? tr("Ducked — call active") : QString();
}

QString MainWindowPresenter::updateText() const {
  const auto& latest = *services_.state->latestVersion();
  if (!latest || !isOutdated(services_.appVersion, *latest)) return {};
  return tr("Update available — v%1").arg(QString::fromStdString(*latest));
}

void MainWindowPresenter::setVisible(bool visible) {
  if (hidden_ == !visible) return;
  hidden_ = !visible;
  if (hidden_) {
    dropCanvas();
    showSection(Section::mixer);
  } else {
    Q_EMIT canvasChanged();
  }
}

void MainWindowPresenter::show(const QString& rawValue) {
  if (const auto section = sectionOf(rawValue)) showSection(*section);
}

void MainWindowPresenter::showNext(int places) {
  const int count = static_cast<int>(allSections.size());
  const int at = (static_cast<int>(section_) + places % count + count) % count;
  showSection(allSections[static_cast<std::size_t>(at)]);
}

void MainWindowPresenter::update() { services_.state->checkForUpdates(); }

void MainWindowPresenter::showSection(Section section) {
  if (section == section_) return;
  section_ = section;
  upperItems_.setSelected(section);
  lowerItems_.setSelected(section);
  Q_EMIT sectionChanged();
  dropCanvas();
}

void MainWindowPresenter::dropCanvas() {
  auto* leaving = std::exchange(canvas_, nullptr);
  Q_EMIT canvasChanged();
  // The page that shows it goes later too, and before it.
  if (leaving) leaving->deleteLater();
}

void MainWindowPresenter::refreshLive() {
  const auto count = static_cast<int>(services_.state->liveBundleIDs()->size());
  upperItems_.setLiveCount(count);
  if (std::exchange(liveCount_, count) != count) Q_EMIT liveTextChanged();
}

}  // namespace quillmere
