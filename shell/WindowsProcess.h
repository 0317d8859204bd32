// The program's windows, which another process draws: it is started with the first of them and ended some time after
// the last one was hidden.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "platform/ActivationRequest.h"
#include "platform/Channel.h"
#include "platform/ProgramWindows.h"
#include "platform/StatusItem.h"
#include "remote/RemoteStatusItem.h"
#include "runtime/Runtime.h"
#include "shell/AnswerWatch.h"

namespace quillmere {

class MixerHost;
class MixerState;

/// [main] throughout. A process that ends unasked takes its windows with it and nothing else. One that hangs is ended,
/// and the next one is asked for what it owed, its windows among it.
class WindowsProcess final : public ProgramWindows {
 public:
  /// Bytes that a process which does not read may let wait before it is told only how things have come to be.
  static constexpr std::size_t mostWaiting = 65536;

  /// All outlive it.
  WindowsProcess(WindowsLauncher& launcher, MixerState& state, const Runtime& runtime, WindowsIntents intents);
  ~WindowsProcess() override;
  WindowsProcess(const WindowsProcess&) = delete;
  WindowsProcess& operator=(const WindowsProcess&) = delete;

  void togglePopover(const StatusItemActivation& activation) override;
  void open(const std::string& identifier, const ActivationRequest& request) override;

  /// Costs the process, as long as it holds.
  void setOldTrayWanted(bool isWanted) override;
  [[nodiscard]] StatusItem* oldTray() override { return &oldTray_; }

  [[nodiscard]] bool isRunning() const { return channel_ != nullptr; }

  [[nodiscard]] std::vector<WindowInfo> windows() const override;
  void open(const std::string& identifier) override { open(identifier, {}); }
  void close(const std::string& identifier) override;
  void orderFront(const std::string& identifier) override;
  [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy_; }
  /// A desktop lists a program by its windows, not by a policy: the value is kept for those who ask.
  void setActivationPolicy(ActivationPolicy policy) override { policy_ = policy; }
  void activate() override;
  void showAboutPanel(const std::string& activationToken) override;
  void terminate() override;
  void onWindowBecameKey(WindowObserver observer) override { becameKey_.push_back(std::move(observer)); }
  void onWindowWillClose(WindowObserver observer) override { willClose_.push_back(std::move(observer)); }

 private:
  struct Guard;

  /// Starts the process if need be; false if it can't be started.
  bool start();
  void stop();
  void ended();
  void hangs();
  /// Windows that have gone with their process.
  void tellClosed(const std::map<std::string, bool>& windows);
  void askAgain(const std::map<std::uint64_t, nlohmann::json>& owed);
  void restartForOldTray();
  void tendOldTray();
  /// Starts the process if need be.
  void ask(nlohmann::json asked);
  /// Nothing happens where there is no process, hence no window.
  void tell(nlohmann::json told);
  void send(const nlohmann::json& sent);
  void take(const nlohmann::json& received);
  void greet(const nlohmann::json& received);
  /// The number of a message that was sent; throws for any other.
  [[nodiscard]] std::uint64_t numberSeen(const nlohmann::json& received) const;
  void takeWindowMessage(const std::string& type, const nlohmann::json& received);

  WindowsLauncher& launcher_;
  MixerState& state_;
  Runtime runtime_;
  WindowsIntents intents_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  std::vector<WindowObserver> becameKey_;
  std::vector<WindowObserver> willClose_;
  std::map<std::string, bool> isVisible_;
  /// Windows that a process has taken with it when it hung, and that the next one shows again.
  std::set<std::string> returning_;
  std::uint64_t asked_ = 0;
  /// What was asked of the process and not dealt with yet, by its number.
  std::map<std::uint64_t, nlohmann::json> pending_;
  /// What a process that ended had not dealt with is asked of the next one, but not of a third.
  bool isAskedAgain_ = false;
  AnswerWatch watch_;
  bool isOldTrayWanted_ = false;
  Duration oldTrayPause_;
  TimerID oldTrayTimer_ = 0;
  TimerID tendTimer_ = 0;
  RemoteStatusItem oldTray_;
  /// One for each process: what arrives late, of a process that is gone, finds its guard gone too.
  std::shared_ptr<Guard> guard_;
  std::shared_ptr<Channel> channel_;
  std::unique_ptr<MixerHost> host_;
  /// Whether the process has said what it is.
  bool isGreeted_ = false;
};

}  // namespace quillmere
