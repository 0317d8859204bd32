// The program's windows where one process is the whole program: the shell's orders go to the windows as they are made,
// and the views see the state itself.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ProgramWindows.h"
#include "windows/ProgramScenes.h"

namespace quillmere {

/// How the windows stand among those of other programs, made over the windows themselves. [main]
using MakeStanding = std::function<std::unique_ptr<WindowSystem>(ProgramScenes& scenes, const WindowsIntents& intents)>;

/// [main] throughout.
class LocalWindows : public QObject, public ProgramWindows {
  Q_OBJECT

 public:
  LocalWindows(const Runtime& runtime, std::shared_ptr<MixerState> state, SceneHost host, WindowsIntents intents,
               const MakeStanding& makeStanding);
  ~LocalWindows() override;

  void open(const std::string& identifier) override { standing_->open(identifier); }
  void open(const std::string& identifier, const ActivationRequest& request) override;
  void togglePopover(const StatusItemActivation& activation) override;
  /// There is none where one process is enough: the menu bar is everybody's.
  [[nodiscard]] StatusItem* oldTray() override { return nullptr; }
  void setOldTrayWanted(bool /*isWanted*/) override {}

  [[nodiscard]] std::vector<WindowInfo> windows() const override { return standing_->windows(); }
  void close(const std::string& identifier) override { standing_->close(identifier); }
  void orderFront(const std::string& identifier) override { standing_->orderFront(identifier); }
  [[nodiscard]] ActivationPolicy activationPolicy() const override { return standing_->activationPolicy(); }
  void setActivationPolicy(ActivationPolicy policy) override { standing_->setActivationPolicy(policy); }
  void activate() override { standing_->activate(); }
  void showAboutPanel(const std::string& activationToken) override { standing_->showAboutPanel(activationToken); }
  void terminate() override { standing_->terminate(); }
  void onWindowBecameKey(WindowObserver observer) override { standing_->onWindowBecameKey(std::move(observer)); }
  void onWindowWillClose(WindowObserver observer) override { standing_->onWindowWillClose(std::move(observer)); }

 private:
  SceneIntents sceneIntents();

  WindowsIntents intents_;
  ProgramScenes scenes_;
  std::unique_ptr<WindowSystem> standing_;
};

}  // namespace quillmere
