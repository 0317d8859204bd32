// The output section: the device in use, the picker of devices, and the master level.
// Shared by the popover and the main window, which differ in their device symbols.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/AudioOutputDevice.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class MixerState;

enum class DeviceSymbolStyle {
  small,  ///< The popover's.
  large,  ///< The main window's.
};

/// The name of the chosen device if it is there, else of the first default one, else "System Output".
[[nodiscard]] QString currentDeviceName(const std::optional<std::string>& chosenUID,
                                        const std::vector<AudioOutputDevice>& devices);
/// The symbol for a device, guessed from its name.
[[nodiscard]] QString deviceSymbol(const QString& deviceName, DeviceSymbolStyle style);

/// [main]
class OutputPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(double masterGain READ masterGain NOTIFY masterGainChanged FINAL)
  Q_PROPERTY(QString percentText READ percentText NOTIFY masterGainChanged FINAL)
  Q_PROPERTY(bool hovering READ hovering WRITE setHovering NOTIFY percentVisibleChanged FINAL)
  Q_PROPERTY(bool percentVisible READ percentVisible NOTIFY percentVisibleChanged FINAL)
  Q_PROPERTY(bool live READ live NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString deviceName READ deviceName NOTIFY deviceChanged FINAL)
  Q_PROPERTY(QString deviceIcon READ deviceIcon NOTIFY deviceChanged FINAL)
  Q_PROPERTY(quillmere::MenuModel* deviceMenu READ deviceMenu CONSTANT FINAL)

 public:
  OutputPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, DeviceSymbolStyle style,
                  QObject* parent = nullptr);
  ~OutputPresenter() override;

  [[nodiscard]] double masterGain() const;
  [[nodiscard]] QString percentText() const;
  [[nodiscard]] bool hovering() const { return hovering_; }
  void setHovering(bool hovering);
  /// While the pointer is over the section, and for 0.9 s after each change of the master, wherever it came from.
  [[nodiscard]] bool percentVisible() const { return hovering_ || hideTimer_ != 0; }
  /// Whether anything sounds.
  [[nodiscard]] bool live() const;
  [[nodiscard]] QString deviceName() const;
  [[nodiscard]] QString deviceIcon() const { return deviceSymbol(deviceName(), style_); }
  [[nodiscard]] MenuModel* deviceMenu() { return &deviceMenu_; }

  Q_INVOKABLE void setMasterGain(double gain);

 Q_SIGNALS:
  void masterGainChanged();
  void percentVisibleChanged();
  void liveChanged();
  void deviceChanged();

 private:
  void flashPercent();
  void refreshDevices();

  std::shared_ptr<MixerState> state_;
  Runtime runtime_;
  DeviceSymbolStyle style_;
  MenuModel deviceMenu_;
  bool hovering_ = false;
  /// Runs while the percentage stays up after a change; 0 when it doesn't.
  TimerID hideTimer_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
