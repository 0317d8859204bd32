// The window system on Qt: windows by identifier, each a scene of its own.
#pragma once

#include <QObject>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/WindowSystem.h"
#include "shell/Scene.h"

namespace quillmere {

class QtWindowSystem final : public QObject, public WindowSystem {
  Q_OBJECT

 public:
  explicit QtWindowSystem(const Runtime& runtime);
  ~QtWindowSystem() override;

  /// Makes a window known under its identifier.
  Scene& add(const std::string& identifier, WindowFactory factory);

  [[nodiscard]] std::vector<WindowInfo> windows() const override;
  [[nodiscard]] bool canOpen(const std::string& identifier) const override;
  void open(const std::string& identifier) override;
  void close(const std::string& identifier) override;
  void orderFront(const std::string& identifier) override;
  [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy_; }
  /// A desktop lists a program by its windows, not by a policy: the value is kept for those who ask.
  void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
  void activate() override;
  void showAboutPanel() override;
  void terminate() override;
  void onWindowBecameKey(WindowObserver observer) override;
  void onWindowWillClose(WindowObserver observer) override;

 private:
  Runtime runtime_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  std::vector<WindowObserver> becameKey_;
  std::vector<WindowObserver> willClose_;
  std::map<std::string, std::unique_ptr<Scene>> scenes_;
};

}  // namespace quillmere
