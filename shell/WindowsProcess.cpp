// Asking, telling, and the process's life.
#include "shell/WindowsProcess.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "remote/MessageType.h"
#include "remote/MixerHost.h"
#include "remote/SeamVersion.h"
#include "remote/WindowMessages.h"
#include "runtime/Threads.h"

namespace quillmere {

using nlohmann::json;

namespace {
/// A process that draws the icon in an old tray is started again when it has ended: soon, then less and less soon.
constexpr Duration firstPause = std::chrono::seconds(1);
constexpr Duration longestPause = std::chrono::minutes(1);
/// Whoever clicks on an icon that hangs asks nobody: a process that draws one is asked now and then.
constexpr Duration tendPeriod = std::chrono::seconds(30);

json message(const char* type) { return {{"type", type}}; }

json message(const char* type, const std::string& window) { return {{"type", type}, {"window", window}}; }

bool isWindow(const std::string& identifier) {
  return identifier == WindowsProcess::mainWindow || identifier == WindowsProcess::onboardingWindow;
}

/// Throws for a window that there is none of.
std::string windowIn(const json& received) {
  auto identifier = received.at("window").get<std::string>();
  if (!isWindow(identifier)) throw std::invalid_argument("no window is called so");
  return identifier;
}
}  // namespace

struct WindowsProcess::Guard {
  WindowsProcess& process;
};

WindowsProcess::WindowsProcess(WindowsLauncher& launcher, MixerState& state, const Runtime& runtime,
                               WindowsIntents intents)
    : launcher_(launcher),
      state_(state),
      runtime_(runtime),
      intents_(std::move(intents)),
      watch_(runtime, [this] { hangs(); }),
      oldTrayPause_(firstPause),
      oldTray_(runtime.log, [this](const json& sent) { send(sent); }) {}

WindowsProcess::~WindowsProcess() {
  for (const auto timer : {oldTrayTimer_, tendTimer_}) {
    if (timer != 0) runtime_.main.cancelTimer(timer);
  }
  host_.reset();
  guard_.reset();
}

bool WindowsProcess::start() {
  if (channel_) return true;
  guard_ = std::make_shared<Guard>(Guard{*this});
  ChannelEvents events;
  events.received = [&main = runtime_.main, weak = std::weak_ptr(guard_)](const std::string& bytes) {
    auto decoded = decodeMessage(bytes);
    if (!decoded) return;
    main.post([weak, received = std::move(*decoded)] {
      if (const auto guard = weak.lock()) guard->process.take(received);
    });
  };
  events.closed = [&main = runtime_.main, weak = std::weak_ptr(guard_)] {
    main.post([weak] {
      if (const auto guard = weak.lock()) guard->process.ended();
    });
  };
  events.drained = [&main = runtime_.main, weak = std::weak_ptr(guard_)] {
    main.post([weak] {
      const auto guard = weak.lock();
      if (guard && guard->process.host_) guard->process.host_->catchUp();
    });
  };
  channel_ = launcher_.launch(std::move(events));
  if (!channel_) {
    guard_.reset();
    return false;
  }
  asked_ = 0;
  pending_.clear();
  isGreeted_ = false;
  watch_.started();
  send({{"type", wire::hello}, {"version", seamVersion()}});
  host_ = std::make_unique<MixerHost>(
      state_, runtime_, [this](const json& sent) { send(sent); },
      [this] { return channel_->waitingBytes() > mostWaiting; });
  if (isOldTrayWanted_) {
    tell({{"type", wire::keepOldTray}, {"isWanted", true}});
    oldTray_.connected();
    tendOldTray();
  }
  return true;
}

void WindowsProcess::stop() {
  host_.reset();
  guard_.reset();
  watch_.ended();
  oldTray_.disconnected();
  isVisible_.clear();
  // The process takes a moment to end, and that is waited for elsewhere.
  runtime_.background.post([channel = std::exchange(channel_, nullptr)]() mutable { channel.reset(); });
}

void WindowsProcess::ended() {
  const auto closed = isVisible_;
  const auto lost = std::exchange(pending_, {});
  stop();
  tellClosed(closed);
  if (isOldTrayWanted_) restartForOldTray();
  askAgain(lost);
}

void WindowsProcess::tellClosed(const std::map<std::string, bool>& windows) {
  for (const auto& [identifier, isVisible] : windows) {
    for (const auto& observer : willClose_) observer(identifier);
  }
}

void WindowsProcess::hangs() {
  Logger(runtime_.log, "WindowsProcess").error("the windows don't answer: they are ended, and started anew");
  channel_->giveUp();
  const auto shown = isVisible_;
  const auto owed = std::exchange(pending_, {});
  stop();
  if (isOldTrayWanted_) restartForOldTray();
  if (std::exchange(isAskedAgain_, false)) {
    tellClosed(shown);
    return;
  }
  // First what was there, so that what was wished for comes to lie on it.
  for (const auto& [identifier, isVisible] : shown) {
    if (!isVisible) continue;
    returning_.insert(identifier);
    open(identifier);
  }
  askAgain(owed);
}

void WindowsProcess::askAgain(const std::map<std::uint64_t, json>& owed) {
  if (owed.empty() || std::exchange(isAskedAgain_, !isAskedAgain_)) return;
  // Who gets no answer asks again: that is one wish, and two of a toggle would be none. The last one knows best where.
  const auto kind = [](const json& asked) {
    return asked.at("type").get<std::string>() + asked.value("window", std::string());
  };
  std::map<std::string, json> last;
  for (const auto& [number, asked] : owed) last.insert_or_assign(kind(asked), asked);
  for (const auto& [number, asked] : owed) {
    const auto wish = last.extract(kind(asked));
    if (!wish.empty()) ask(wish.mapped());
  }
}

void WindowsProcess::restartForOldTray() {
  if (oldTrayTimer_ != 0) return;
  oldTrayTimer_ = runtime_.main.postAfter(oldTrayPause_, [this] {
    oldTrayTimer_ = 0;
    if (isOldTrayWanted_ && !start()) restartForOldTray();
  });
  oldTrayPause_ = std::min(2 * oldTrayPause_, longestPause);
}

void WindowsProcess::tendOldTray() {
  if (tendTimer_ != 0) return;
  tendTimer_ = runtime_.main.postAfter(tendPeriod, [this] {
    tendTimer_ = 0;
    if (!isOldTrayWanted_ || !channel_) return;
    ask(message(wire::answer));
    tendOldTray();
  });
}

void WindowsProcess::ask(json asked) {
  QUILLMERE_CHECK_ON(runtime_.main, "the windows are asked off the main thread");
  if (!start()) return;
  tell(asked);
  watch_.asked(asked_);
  pending_[asked_] = std::move(asked);
}

void WindowsProcess::tell(json told) {
  QUILLMERE_CHECK_ON(runtime_.main, "the windows are asked off the main thread");
  if (!channel_) return;
  told["number"] = ++asked_;
  send(told);
}

void WindowsProcess::send(const json& sent) {
  if (channel_) channel_->send(encodeMessage(sent));
}

void WindowsProcess::togglePopover(const StatusItemActivation& activation) {
  auto asked = message(wire::togglePopover);
  asked["token"] = activation.activationToken;
  if (activation.at) {
    asked["x"] = activation.at->x;
    asked["y"] = activation.at->y;
  }
  ask(std::move(asked));
}

void WindowsProcess::open(const std::string& identifier, const ActivationRequest& request) {
  if (!isWindow(identifier)) return;
  auto asked = message(wire::openWindow, identifier);
  asked["token"] = request.activationToken;
  if (request.section) asked["section"] = *request.section;
  ask(std::move(asked));
}

void WindowsProcess::setOldTrayWanted(bool isWanted) {
  QUILLMERE_CHECK_ON(runtime_.main, "the windows are asked off the main thread");
  if (std::exchange(isOldTrayWanted_, isWanted) == isWanted) return;
  if (!isWanted) {
    tell({{"type", wire::keepOldTray}, {"isWanted", false}});
    oldTray_.disconnected();
  } else if (channel_) {
    tell({{"type", wire::keepOldTray}, {"isWanted", true}});
    oldTray_.connected();
    tendOldTray();
  } else if (!start()) {
    restartForOldTray();
  }
}

std::vector<WindowInfo> WindowsProcess::windows() const {
  QUILLMERE_CHECK_ON(runtime_.main, "the windows are asked off the main thread");
  std::vector<WindowInfo> result;
  result.reserve(isVisible_.size());
  for (const auto& [identifier, isVisible] : isVisible_) result.push_back({identifier, isVisible});
  return result;
}

void WindowsProcess::close(const std::string& identifier) { tell(message(wire::closeWindow, identifier)); }

void WindowsProcess::orderFront(const std::string& identifier) { tell(message(wire::orderFront, identifier)); }

void WindowsProcess::activate() { tell(message(wire::activate)); }

void WindowsProcess::showAboutPanel(const std::string& activationToken) {
  auto asked = message(wire::showAboutPanel);
  asked["token"] = activationToken;
  ask(std::move(asked));
}

void WindowsProcess::terminate() { runtime_.main.post(intents_.terminate); }

void WindowsProcess::take(const json& received) {
  const auto type = messageType(received);
  if (!isGreeted_) {
    greet(received);
    return;
  }
  if (host_->take(received) || oldTray_.take(received)) return;
  try {
    takeWindowMessage(type, received);
  } catch (const std::exception& error) {
    Logger(runtime_.log, "WindowsProcess").error("ignored \"" + type + "\": " + error.what());
  }
}

void WindowsProcess::greet(const json& received) {
  const auto version = received.is_object() && messageType(received) == wire::hello && received.contains("version") &&
                               received.at("version").is_string()
                           ? received.at("version").get<std::string>()
                           : std::string();
  isGreeted_ = version == seamVersion();
  if (isGreeted_) {
    watch_.cameUp();
    return;
  }
  // It has heard this one's version, and ends by itself.
  stop();
  intents_.halvesDiffer(version);
}

std::uint64_t WindowsProcess::numberSeen(const json& received) const {
  const auto& seen = received.at("seen");
  if (!seen.is_number_unsigned() || seen.get<std::uint64_t>() > asked_) {
    throw std::out_of_range("nothing of that number was sent");
  }
  return seen.get<std::uint64_t>();
}

void WindowsProcess::takeWindowMessage(const std::string& type, const json& received) {
  if (type == wire::openMainWindow) {
    ActivationRequest request;
    if (const auto section = received.find("section"); section != received.end()) {
      request.section = section->get<std::string>();
    }
    intents_.openMainWindow(request);
  } else if (type == wire::finishOnboarding) {
    intents_.finishOnboarding();
  } else if (type == wire::quit) {
    terminate();
  } else if (type == wire::windowShown) {
    const auto identifier = windowIn(received);
    isVisible_[identifier] = true;
    // One that returns has been there: nothing begins with it.
    if (returning_.erase(identifier) == 0 && identifier == mainWindow) intents_.mainWindowShown();
  } else if (type == wire::windowBecameKey) {
    const auto identifier = windowIn(received);
    for (const auto& observer : becameKey_) observer(identifier);
  } else if (type == wire::windowHidden) {
    const auto identifier = windowIn(received);
    if (received.at("isClosing").get<bool>()) {
      for (const auto& observer : willClose_) observer(identifier);
    }
    isVisible_[identifier] = false;
  } else if (type == wire::begun) {
    watch_.tookUp();
  } else if (type == wire::taken) {
    const auto seen = numberSeen(received);
    pending_.erase(pending_.begin(), pending_.upper_bound(seen));
    watch_.done(seen);
    isAskedAgain_ = false;
  } else if (type == wire::idle) {
    oldTrayPause_ = firstPause;
    if (numberSeen(received) == asked_) stop();
  }
}

}  // namespace quillmere
