// The windows of this process as the toolkit alone knows them, for a system that the program asks nothing more.
#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

#include "platform/WindowSystem.h"

namespace quillmere {

class ProgramScenes;

/// [main] throughout. The scenes outlive it.
class ToolkitWindowSystem final : public QObject, public WindowSystem {
  Q_OBJECT

 public:
  /// @param terminate  ends the program
  ToolkitWindowSystem(ProgramScenes& scenes, std::function<void()> terminate);
  ~ToolkitWindowSystem() override;

  [[nodiscard]] std::vector<WindowInfo> windows() const override;
  void open(const std::string& identifier) override;
  void close(const std::string& identifier) override;
  void orderFront(const std::string& identifier) override;
  [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy_; }
  /// Kept for those who ask: the toolkit knows of none.
  void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
  void activate() override;
  void showAboutPanel(const std::string& activationToken) override;
  void terminate() override { terminate_(); }
  void onWindowBecameKey(WindowObserver observer) override { becameKey_.push_back(std::move(observer)); }
  void onWindowWillClose(WindowObserver observer) override { willClose_.push_back(std::move(observer)); }

 private:
  ProgramScenes& scenes_;
  std::function<void()> terminate_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  std::vector<WindowObserver> becameKey_;
  std::vector<WindowObserver> willClose_;
};

}  // namespace quillmere
