// The program without its face: the real machine and state on a plain main loop, for the end-to-end tests.
// Reads one command a line (fields parted by tabs, or by blanks where there is no tab), answers each with one JSON
// line.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "core/DuckRule.h"
#include "core/Json.h"
#include "core/Uuid.h"
#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"
#include "platform/Machine.h"
#include "platform/linux/LinuxMachine.h"
#include "platform/linux/LinuxThreads.h"
#include "runtime/LoopExecutor.h"
#include "runtime/Runtime.h"
#include "runtime/ThreadPoolExecutor.h"
#include "state/AppState.h"

namespace quillmere {
namespace {

using Fields = std::vector<std::string>;
using Answer = nlohmann::json;

/// Nanoseconds of the clock that PipeWire's cycles are told in.
std::int64_t monotonicNanos() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

/// The machine's own clocks, with a wall clock that can be put ahead: as after a sleep of the machine, or when somebody
/// sets the clock. Nothing waits less for it.
class JumpingClocks final : public Clocks {
 public:
  [[nodiscard]] Date now() const override { return system_.now().advancedBy(ahead_); }
  [[nodiscard]] MonotonicTime monotonicNow() const override { return system_.monotonicNow(); }
  void sleepThread(Duration duration) override { system_.sleepThread(duration); }
  /// [any]
  void jump(double seconds) { ahead_ += seconds; }

 private:
  SystemClocks system_;
  std::atomic<double> ahead_ = 0.0;
};

Fields split(const std::string& line) {
  const char separator = line.find('\t') == std::string::npos ? ' ' : '\t';
  Fields fields;
  std::string field;
  for (const char character : line) {
    if (character == separator) {
      fields.push_back(std::move(field));
      field.clear();
    } else {
      field += character;
    }
  }
  fields.push_back(std::move(field));
  return fields;
}

/// Takes what strtof takes, "nan" and "inf" among it.
std::optional<float> number(const std::string& text) {
  char* end = nullptr;
  const float value = std::strtof(text.c_str(), &end);
  if (text.empty() || *end != '\0') return std::nullopt;
  return value;
}

std::optional<std::string> unlessDash(const std::string& text) {
  if (text == "-") return std::nullopt;
  return text;
}

Answer orNull(const std::optional<std::string>& text) { return text ? Answer(*text) : Answer(); }

std::string_view phaseName(PomodoroPhase::Kind kind) {
  switch (kind) {
    case PomodoroPhase::Kind::focus:
      return "focus";
    case PomodoroPhase::Kind::rest:
      return "break";
    case PomodoroPhase::Kind::idle:
      break;
  }
  return "idle";
}

/// How long a thread was away at most: it means to come by every few milliseconds, and what it comes late is noted.
class Attendance {
 public:
  static constexpr std::chrono::milliseconds period{2};

  /// Called when the thread has come by.
  void note() {
    const auto now = monotonicNanos();
    const auto before = last_.exchange(now);
    if (before == 0) return;
    const auto late = now - before - std::chrono::nanoseconds(period).count();
    auto longest = longest_.load();
    while (late > longest && !longest_.compare_exchange_weak(longest, late)) {
    }
  }
  /// It does not mean to come by any more.
  void rest() { last_ = 0; }
  /// In milliseconds since the last call of this, an absence that still lasts among it. [any]
  double take() {
    const auto before = last_.load();
    const auto since = before == 0 ? 0 : monotonicNanos() - before - std::chrono::nanoseconds(period).count();
    return static_cast<double>(std::max(longest_.exchange(0), since)) / 1e6;
  }

 private:
  std::atomic<std::int64_t> last_{0};
  std::atomic<std::int64_t> longest_{0};
};

/// Watches the main loop, and beside it a thread that has nothing else to do: what that one is late is the machine's
/// doing.
class Watch {
 public:
  explicit Watch(Executor& main) : main_(main) {}
  ~Watch() { end(); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  /// Begins with the first call; "end" ends it, and with it what it costs. [main]
  bool answer(const Fields& fields, Answer& answer) {
    if (fields.size() == 2 && fields[1] == "end") {
      end();
    } else if (!idler_.joinable()) {
      isOver_ = false;
      idler_ = std::thread([this] {
        while (!isOver_) {
          idle_.note();
          std::this_thread::sleep_for(Attendance::period);
        }
      });
      comeBy();
    }
    answer["away"] = onMain_.take();
    answer["machine"] = idle_.take();
    return true;
  }

 private:
  void end() {
    isOver_ = true;
    if (idler_.joinable()) idler_.join();
    onMain_.rest();
    idle_.rest();
  }
  void comeBy() {
    if (isOver_) return;
    onMain_.note();
    main_.postAfter(Attendance::period, [this] { comeBy(); });
  }

  Executor& main_;
  Attendance onMain_;
  Attendance idle_;
  std::atomic<bool> isOver_{false};
  std::thread idler_;
};

/// The commands. Each fills the answer, or gives false when its fields make no sense. [main]
class Commands {
 public:
  Commands(AppState& state, Workspace& workspace, const ProcessTapEngine& engine, JumpingClocks& clocks, Watch& watch)
      : state_(state), clocks_(clocks) {
    table_ = {
        {"away", [&watch](const Fields& fields, Answer& answer) { return watch.answer(fields, answer); }},
        {"heard",
         [&engine](const Fields&, Answer& answer) {
           answer["heard"] = engine.activeBundleIDs();
           return true;
         }},
        {"list", [this](const Fields&, Answer& answer) { return list(answer); }},
        {"processes",
         [&workspace](const Fields&, Answer& answer) {
           Answer& processes = answer["processes"] = Answer::object();
           for (const auto& each : workspace.runningApplications()) {
             if (each.bundleID) processes[*each.bundleID].push_back(each.pid);
           }
           return true;
         }},
        {"tabs", [this](const Fields&, Answer& answer) { return tabs(answer); }},
        {"activate", [this](const Fields& fields, Answer&) { return activate(fields); }},
        {"gain", [this](const Fields& fields, Answer&) { return gain(fields); }},
        {"mute", [this](const Fields& fields, Answer&) { return mute(fields); }},
        {"route", [this](const Fields& fields, Answer&) { return route(fields); }},
        {"master", [this](const Fields& fields, Answer&) { return master(fields); }},
        {"output", [this](const Fields& fields, Answer&) { return output(fields); }},
        {"whisper", [this](const Fields&, Answer&) { return state_.toggleWhisperMode(), true; }},
        {"sleep", [this](const Fields& fields, Answer&) { return sleep(fields); }},
        {"focus", [this](const Fields& fields, Answer&) { return focus(fields); }},
        {"profile", [this](const Fields& fields, Answer& answer) { return profile(fields, answer); }},
        {"rule", [this](const Fields& fields, Answer&) { return rule(fields); }},
        {"pause", [this](const Fields& fields, Answer&) { return pause(fields); }},
        {"clock", [this](const Fields& fields, Answer&) { return clock(fields); }},
    };
  }

  Answer run(const std::string& line) {
    const Fields fields = split(line);
    Answer answer{{"ok", false}, {"t", monotonicNanos()}};
    const auto command = table_.find(fields.front());
    if (command == table_.end()) {
      answer["error"] = "no such command";
    } else if (command->second(fields, answer)) {
      answer["ok"] = true;
    } else {
      answer["error"] = "the command's fields make no sense";
    }
    return answer;
  }

 private:
  bool tabs(Answer& answer) const {
    Answer browsers = Answer::object();
    for (const auto& [browser, tabs] : state_.browserTabs().get()) {
      Answer& list = browsers[browser] = Answer::array();
      for (const auto& tab : tabs) {
        list.push_back({{"id", tab.id}, {"title", tab.title}, {"url", tab.urlString}, {"active", tab.isActive}});
      }
    }
    answer["tabs"] = browsers;
    Answer companions = Answer::array();
    for (const auto& each : state_.browserCompanions().get()) {
      companions.push_back({{"browser", each.browser}, {"version", each.version}, {"host", each.hostVersion}});
    }
    answer["companions"] = companions;
    return true;
  }

  bool activate(const Fields& fields) {
    if (fields.size() != 3) return false;
    const auto& tabs = state_.browserTabs().get();
    const auto browser = tabs.find(fields[1]);
    if (browser == tabs.end()) return false;
    const auto tab = std::ranges::find(browser->second, fields[2], &BrowserTab::id);
    if (tab == browser->second.end()) return false;
    state_.activateTab(browser->first, *tab);
    return true;
  }

  bool list(Answer& answer) const {
    Answer apps = Answer::array();
    for (const auto& app : state_.apps().get()) {
      apps.push_back({{"bundleID", app.bundleID},
                      {"name", app.name},
                      {"gain", app.gain},
                      {"muted", app.muted},
                      {"route", orNull(app.routedDeviceUID)}});
    }
    Answer devices = Answer::array();
    for (const auto& device : state_.outputDevices().get()) {
      devices.push_back({{"uid", device.uid}, {"name", device.name}, {"default", device.isDefault}});
    }
    Answer profiles = Answer::array();
    for (const auto& profile : state_.profiles().get()) {
      profiles.push_back({{"id", profile.id.text()}, {"name", profile.name}, {"apps", profile.apps.size()}});
    }
    answer["apps"] = std::move(apps);
    answer["devices"] = std::move(devices);
    answer["profiles"] = std::move(profiles);
    answer["live"] = state_.liveBundleIDs().get();
    answer["mic"] = state_.micBundleIDs().get();
    answer["master"] = state_.masterGain().get();
    answer["output"] = orNull(state_.outputDeviceUID().get());
    answer["isDucking"] = state_.isDucking().get();
    answer["ducked"] = state_.duckedBundleIDs().get();
    answer["isWhispering"] = state_.isWhisperMode().get();
    answer["sleeping"] = state_.sleepTimerEndsAt().get().has_value();
    answer["phase"] = phaseName(state_.pomodoroPhase().get().kind);
    answer["pauseOnHeadphoneDisconnect"] = state_.pauseOnHeadphoneDisconnect().get();
    const auto& track = state_.nowPlaying().get();
    answer["nowPlaying"] = track ? Answer({{"title", track->title}, {"isPlaying", track->isPlaying}}) : Answer();
    return true;
  }

  bool gain(const Fields& fields) {
    const auto value = fields.size() == 3 ? number(fields[2]) : std::nullopt;
    if (!value) return false;
    state_.setGain(*value, fields[1]);
    return true;
  }

  bool mute(const Fields& fields) {
    if (fields.size() != 2) return false;
    state_.toggleMute(fields[1]);
    return true;
  }

  bool route(const Fields& fields) {
    if (fields.size() != 3) return false;
    state_.setRouting(unlessDash(fields[2]), fields[1]);
    return true;
  }

  bool master(const Fields& fields) {
    const auto value = fields.size() == 2 ? number(fields[1]) : std::nullopt;
    if (!value) return false;
    state_.setMasterGain(*value);
    return true;
  }

  bool output(const Fields& fields) {
    if (fields.size() != 2) return false;
    state_.setOutputDeviceUID(unlessDash(fields[1]));
    return true;
  }

  bool sleep(const Fields& fields) {
    if (fields.size() != 2) return false;
    if (fields[1] == "-") {
      state_.cancelSleepTimer();
    } else {
      state_.startSleepTimer(std::atoi(fields[1].c_str()));
    }
    return true;
  }

  bool focus(const Fields& fields) {
    if (fields.size() < 2) return false;
    const std::string& what = fields[1];
    if (what == "app" && fields.size() == 3) {
      state_.setPomodoroFocusBundleID(unlessDash(fields[2]));
    } else if (what == "minutes" && fields.size() == 4) {
      state_.setPomodoroFocusMinutes(std::atoi(fields[2].c_str()));
      state_.setPomodoroBreakMinutes(std::atoi(fields[3].c_str()));
    } else if (what == "start") {
      state_.startPomodoroFocus();
    } else if (what == "cancel") {
      state_.cancelPomodoro(false);
    } else if (what == "break") {
      state_.skipPomodoroToBreak();
    } else if (what == "idle") {
      state_.skipPomodoroToIdle();
    } else {
      return false;
    }
    return true;
  }

  bool profile(const Fields& fields, Answer& answer) {
    if (fields.size() != 3) return false;
    if (fields[1] == "add") {
      state_.addProfile(fields[2]);
      answer["id"] = state_.profiles().get().empty() ? Answer() : Answer(state_.profiles().get().back().id.text());
      return true;
    }
    const auto id = Uuid::parse(fields[2]);
    if (!id) return false;
    if (fields[1] == "apply") {
      state_.applyProfile(*id);
    } else if (fields[1] == "delete") {
      state_.deleteProfile(*id);
    } else if (fields[1] == "duplicate") {
      state_.duplicateProfile(*id);
    } else {
      return false;
    }
    return true;
  }

  /// rule TRIGGERS DUCKED TARGET DELAY: identifiers parted by commas, a gain, milliseconds.
  bool rule(const Fields& fields) {
    const auto target = fields.size() == 5 ? number(fields[3]) : std::nullopt;
    if (!target) return false;
    DuckRule changed = state_.duckRule().get();
    changed.triggerBundleIDs = identifiers(fields[1]);
    changed.duckedBundleIDs = identifiers(fields[2]);
    changed.targetGain = *target;
    changed.restoreDelayMillis = std::atoll(fields[4].c_str());
    state_.setDuckRule(std::move(changed));
    return true;
  }

  bool pause(const Fields& fields) {
    if (fields.size() != 2) return false;
    state_.setPauseOnHeadphoneDisconnect(fields[1] == "on");
    return true;
  }

  /// clock SECONDS: puts the wall clock ahead.
  bool clock(const Fields& fields) {
    const auto seconds = fields.size() == 2 ? number(fields[1]) : std::nullopt;
    if (!seconds) return false;
    clocks_.jump(static_cast<double>(*seconds));
    return true;
  }

  static std::set<std::string> identifiers(const std::string& text) {
    std::set<std::string> found;
    std::string::size_type start = 0;
    while (start < text.size()) {
      const auto end = std::min(text.find(',', start), text.size());
      if (end > start) found.insert(text.substr(start, end - start));
      start = end + 1;
    }
    return found;
  }

  AppState& state_;
  JumpingClocks& clocks_;
  std::map<std::string, std::function<bool(const Fields&, Answer&)>, std::less<>> table_;
};

int runAgent() {
  installHostThreads(linuxThreads());
  JumpingClocks clocks;
  StandardErrorLogSink log;
  LoopExecutor main;
  ThreadPoolExecutor background(2);
  const Runtime runtime{main, background, clocks, log, makeThreadSerialQueue};
  Machine machine = makeLinuxMachine(runtime);
  ProcessTapEngine engine(*machine.audio, runtime);
  DriverClient driver(engine, background);
  const auto state = AppState::create(machine, runtime, driver);
  Watch watch(main);
  Commands commands(*state, *machine.workspace, engine, clocks, watch);

  std::thread reader([&] {
    std::string line;
    while (std::getline(std::cin, line) && line != "quit") {
      main.post([&commands, line] {
        std::cout << commands.run(line).dump(-1, ' ', false, Answer::error_handler_t::replace) << '\n' << std::flush;
      });
    }
    main.post([&main] { main.stop(); });
  });
  main.run();
  reader.join();
  // The polls of the pool ask the machine: they end before it goes.
  background.shutDown();
  engine.stop();
  return 0;
}

}  // namespace
}  // namespace quillmere

int main() { return quillmere::runAgent(); }
