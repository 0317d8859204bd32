// The output section.
#include "views/mixer/OutputPresenter.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <utility>

#include "state/MixerState.h"
#include "views/mixer/DeviceMenus.h"
#include "views/shared/PercentText.h"

namespace quillmere {

namespace {

constexpr auto percentStaysUp = std::chrono::milliseconds(900);

struct SymbolRule {
  std::array<const char*, 2> words;
  const char* small;
  const char* large;
};
/// The first rule of which a word is in the name holds, wherever in the name it stands.
constexpr std::array symbolRules{
    SymbolRule{{"airpod", "beats"}, "airpods", "airpods.max"},
    SymbolRule{{"headphone", "headset"}, "headphones", "headphones"},
    SymbolRule{{"display", "display"}, "display", "display"},
    SymbolRule{{"hdmi", "tv"}, "tv", "tv"},
};
constexpr SymbolRule anythingElse{{}, "speaker.wave.2", "hifispeaker.2.fill"};

}  // namespace

QString currentDeviceName(const std::optional<std::string>& chosenUID, const std::vector<AudioOutputDevice>& devices) {
  auto device = std::ranges::find_if(devices, [&](const AudioOutputDevice& each) { return chosenUID == each.uid; });
  if (device == devices.end()) device = std::ranges::find_if(devices, &AudioOutputDevice::isDefault);
  if (device == devices.end()) return QCoreApplication::translate("OutputPresenter", "System Output");
  return QString::fromStdString(device->name);
}

QString deviceSymbol(const QString& deviceName, DeviceSymbolStyle style) {
  const auto name = deviceName.toLower();
  const auto rule = std::ranges::find_if(symbolRules, [&](const SymbolRule& each) {
    return std::ranges::any_of(each.words, [&](const char* word) { return name.contains(QLatin1StringView(word)); });
  });
  const auto& found = rule == symbolRules.end() ? anythingElse : *rule;
  return QString::fromLatin1(style == DeviceSymbolStyle::small ? found.small : found.large);
}

OutputPresenter::OutputPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, DeviceSymbolStyle style,
                                 QObject* parent)
    : QObject(parent), state_(std::move(state)), runtime_(runtime), style_(style) {
  subscriptions_.push_back(state_->masterGain().observe([this](float) {
    Q_EMIT masterGainChanged();
    flashPercent();
  }));
  subscriptions_.push_back(state_->outputDevices().observe([this](const auto&) { refreshDevices(); }));
  subscriptions_.push_back(state_->outputDeviceUID().observe([this](const auto&) { refreshDevices(); }));
  subscriptions_.push_back(state_->liveBundleIDs().observe([this](const auto&) { Q_EMIT liveChanged(); }));
  refreshDevices();
}

OutputPresenter::~OutputPresenter() {
  if (hideTimer_ != 0) runtime_.main.cancelTimer(hideTimer_);
}

double OutputPresenter::masterGain() const { return static_cast<double>(*state_->masterGain()); }

QString OutputPresenter::percentText() const { return quillmere::percentText(*state_->masterGain()); }

void OutputPresenter::setHovering(bool hovering) {
  if (hovering_ == hovering) return;
  hovering_ = hovering;
  Q_EMIT percentVisibleChanged();
}

bool OutputPresenter::live() const { return !state_->liveBundleIDs()->empty(); }

QString OutputPresenter::deviceName() const {
  return currentDeviceName(*state_->outputDeviceUID(), *state_->outputDevices());
}

void OutputPresenter::setMasterGain(double gain) { state_->setMasterGain(static_cast<float>(gain)); }

void OutputPresenter::flashPercent() {
  if (hideTimer_ != 0) runtime_.main.cancelTimer(hideTimer_);
  hideTimer_ = runtime_.main.postAfter(percentStaysUp, [this] {
    hideTimer_ = 0;
    Q_EMIT percentVisibleChanged();
  });
  Q_EMIT percentVisibleChanged();
}

void OutputPresenter::refreshDevices() {
  deviceMenu_.setEntries(deviceEntries(*state_->outputDevices(), *state_->outputDeviceUID(),
                                       [this](std::string uid) { state_->setOutputDeviceUID(std::move(uid)); }));
  Q_EMIT deviceChanged();
}

}  // namespace quillmere
