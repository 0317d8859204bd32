// One application's row: what it shows and what gestures on it do.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QUrl>

#include "core/AudioApp.h"
#include "views/mixer/AppRowLook.h"
#include "views/shared/MenuModel.h"
#include "views/shared/PercentText.h"
#include "views/tabs/TabListModel.h"

namespace quillmere {

class MixerState;

/// [main] Kept up to date by its model. The state outlives it.
class AppRowPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Rows belong to their model")
  Q_PROPERTY(QString bundleID READ bundleID CONSTANT FINAL)
  Q_PROPERTY(QUrl iconSource READ iconSource CONSTANT FINAL)
  Q_PROPERTY(quillmere::MenuModel* routeMenu READ routeMenu CONSTANT FINAL)
  Q_PROPERTY(quillmere::TabListModel* tabs READ tabs CONSTANT FINAL)
  Q_PROPERTY(double gain READ gain NOTIFY gainChanged FINAL)
  Q_PROPERTY(QString percentText READ percentText NOTIFY gainChanged FINAL)
  Q_PROPERTY(QString name READ name NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString toolTip READ toolTip NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString routedDeviceName READ routedDeviceName NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString statusSymbol READ statusSymbol NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString percentColor READ percentColor NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString routeSymbol READ routeSymbol NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString routeColor READ routeColor NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString muteSymbol READ muteSymbol NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString muteColor READ muteColor NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString muteTip READ muteTip NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString cardSubtitle READ cardSubtitle NOTIFY lookChanged FINAL)
  Q_PROPERTY(QString cardPercentColor READ cardPercentColor NOTIFY lookChanged FINAL)
  Q_PROPERTY(bool muted READ muted NOTIFY lookChanged FINAL)
  Q_PROPERTY(bool live READ live NOTIFY lookChanged FINAL)
  Q_PROPERTY(bool ducked READ ducked NOTIFY lookChanged FINAL)
  Q_PROPERTY(bool scrollAdjusts READ scrollAdjusts NOTIFY scrollAdjustsChanged FINAL)

 public:
  AppRowPresenter(MixerState& state, AudioApp app, int tabLimit, TabListModel::Activate activateTab,
                  QObject* parent = nullptr);

  [[nodiscard]] const std::string& identifier() const { return app_.bundleID; }
  [[nodiscard]] QString bundleID() const { return QString::fromStdString(app_.bundleID); }
  [[nodiscard]] QUrl iconSource() const;
  /// Filled when it is first asked for: most rows' menus are never opened.
  [[nodiscard]] MenuModel* routeMenu();
  [[nodiscard]] TabListModel* tabs() { return &tabs_; }
  [[nodiscard]] double gain() const { return static_cast<double>(app_.gain); }
  [[nodiscard]] QString percentText() const { return quillmere::percentText(app_.gain); }
  [[nodiscard]] QString name() const { return look_.name; }
  [[nodiscard]] QString toolTip() const { return look_.toolTip; }
  [[nodiscard]] QString routedDeviceName() const { return look_.routedDeviceName; }
  [[nodiscard]] QString statusSymbol() const { return look_.statusSymbol; }
  [[nodiscard]] QString percentColor() const { return look_.percentColor; }
  [[nodiscard]] QString routeSymbol() const { return look_.routeSymbol; }
  [[nodiscard]] QString routeColor() const { return look_.routeColor; }
  [[nodiscard]] QString muteSymbol() const { return look_.muteSymbol; }
  [[nodiscard]] QString muteColor() const { return look_.muteColor; }
  [[nodiscard]] QString muteTip() const { return look_.muteTip; }
  [[nodiscard]] QString cardSubtitle() const { return look_.cardSubtitle; }
  [[nodiscard]] QString cardPercentColor() const { return look_.cardPercentColor; }
  [[nodiscard]] bool muted() const { return look_.muted; }
  [[nodiscard]] bool live() const { return look_.live; }
  [[nodiscard]] bool ducked() const { return look_.ducked; }
  [[nodiscard]] bool scrollAdjusts() const { return scrollAdjusts_; }

  /// Takes what the state says of the application now. What is as it was costs nothing and tells nothing.
  void update(const AudioApp& app, bool isLive, bool isDucked);
  /// The output devices have changed.
  void updateDevices();
  void setScrollAdjusts(bool adjusts);

  /// Something shows the row from now on, or does so no longer.
  void hold() { ++holds_; }
  void release();
  /// The model has given the row up: it goes once nothing shows it any more.
  void leave();

  Q_INVOKABLE void setGain(double gain);
  /// A scroll over the slider by `delta` units (core/ScrollRule.h), upwards positive. False if the setting is off: the
  /// event then belongs to whatever lies beneath.
  Q_INVOKABLE bool scrollBy(double delta);
  Q_INVOKABLE void toggleMute();

 Q_SIGNALS:
  void gainChanged();
  void lookChanged();
  void scrollAdjustsChanged();

 private:
  void show(AppRowLook look);
  void fillRouteMenu();

  MixerState& state_;
  AudioApp app_;
  AppRowLook look_;
  bool scrollAdjusts_ = true;
  int holds_ = 0;
  bool isLeaving_ = false;
  /// A child; null until it is asked for.
  MenuModel* routeMenu_ = nullptr;
  TabListModel tabs_;
};

}  // namespace quillmere
